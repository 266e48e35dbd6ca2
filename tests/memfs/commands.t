# The memfs and assign commands where no block address is needed: usage
# lines, refusals, labels on arbitrary addresses and copies between disk files.

=== usage lines and blocks that are not in the list
--- stdin
prompt $%n
override on
memfs
sfmemoria -bad
memfs -format
memfs-list
memfs-cp a
memfs-mv a
memfs-del
format zzz
memfs-list 0x1234
memfs -search
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Uso memfs [-format|-list|-search|-label|-copy|-move|-delete] ....
$
Uso sfmemoria [-format|-list|-search|-label|-copy|-move|-delete] ....
$
   memfs-format id_mem
$
   memfs-ls id_mem
$
   memfs-cp id1 id2
$
   memfs-mv id1 id2
$
   memfs-rm id_fich
$
   id_mem no valido (no corresponde a un bloque de malloc o shared)
$
Id sistema de ficheros no valido
$
$
=== labels: replacement, seven significant characters, deletion and clearing
--- stdin
prompt $%n
override on
assign datos 0x10
assign datos 0x20
assign memoria1 0x30
label memoria2 40
assign -add otro 0xABC
assign
assign -add x 0
assign -add x
assign x y z
assign solo
assign -del nolabel
assign -del
assign -del datos
showlabels
memfs -label
assign -clear
assign
assign memoria 0x50
memfs-label
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
$
$
$
$
LABEL:    datos, ADDR: 0x20 
LABEL:  memoria, ADDR: 0x40 
LABEL:     otro, ADDR: 0xabc 
$
direccion de memoria no valida: 0
$
uso: assign -add nombre addr
$
uso: assign [-add|-del|-clear] ....
$
uso: assign [-add|-del|-clear] ....
$
$
$
$
LABEL:  memoria, ADDR: 0x40 
LABEL:     otro, ADDR: 0xabc 
$
LABEL:  memoria, ADDR: 0x40 
LABEL:     otro, ADDR: 0xabc 
$
$
$
$
LABEL:  memoria, ADDR: 0x50 
$
=== copies and moves between disk files; no file system named
--- setup
printf 'linea 1\nlinea 2\n' > fichero.txt
printf 'antes' > existente
--- stdin
prompt $%n
override on
memfs-cp fichero.txt copia.txt
memfs-cp fichero.txt existente
memfs-mv copia.txt movido.txt
memfs-mv nada otro
memfs-cp 0x1234:a b
memfs-cp fichero.txt 0x1234:a
memfs-cp fichero.txt zz:a
memfs-mv fichero.txt :a
memfs-del 0x10:a
remove zz:
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
$
$
$
$
$
$
$
$
$
--- stderr
Imposible copiar fichero: File exists
Imposible mover fichero: No such file or directory
Imposible copiar fichero: No such device or address
Imposible copiar fichero: No such device or address
Imposible copiar fichero: No such device or address
Imposible mover fichero: No such device or address
Imposible borrar fichero: No such device or address
Imposible borrar fichero: No such device or address
--- post
cmp fichero.txt movido.txt && test ! -e copia.txt && test ! -e b && test ! -e otro && cat existente
--- post-stdout
antes (no-eol)
