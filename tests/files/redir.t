# Redirection of the shell's own standard streams, and close of protected
# and unknown descriptors.
=== redirection commands before initredir, and initredir/clearredir twice
--- stdin
prompt $%n
override on
redout f
redin f
rederr
clearredir
initredir
initredir extra
clearredir
clearredir
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Hay que inicializar redireccion
$
Hay que inicializar redireccion
$
Hay que inicializar redireccion
$
redireccion no inicializada
$
$
redireccion ya inicializada
$
$
redireccion no inicializada
$
--- post
ls
=== initredir marks the standard descriptors and their copies; close refuses them
--- stdin
prompt $%n
override on
initredir
listopen 7
redout
redout -reset
close 1
close 1 -f
close 4
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar \(redir\)
descriptor: 1, offset: (  )-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)
~ descriptor: 3, offset: \(\d+\)-> copia descriptor 0 \(redir\)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (  )-> no usado 
$
entrada estandar en fichero configuracion original (-1) 
salida estandar en fichero configuracion original (-1) 
error estandar en fichero configuracion original (-1) 
$
$
No se hace: descriptor involucrado en redireccion.
$
No se hace: descriptor involucrado en redireccion.
$
No se hace: descriptor involucrado en redireccion.
$
=== the shell's output goes to the end of a file and comes back
--- setup
printf 'antes\n' > salida.txt
--- stdin
prompt $%n
override on
initredir
redout salida.txt
writestr 1 escrito
listopen 8
rederr
redout -reset
redout
listopen 8
close 6
open otro cr
listopen 8
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
$
entrada estandar en fichero configuracion original (-1) 
salida estandar en fichero configuracion original (-1) 
error estandar en fichero configuracion original (-1) 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar \(redir\)
descriptor: 1, offset: (  )-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)
~ descriptor: 3, offset: \(\d+\)-> copia descriptor 0 \(redir\)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (  )-> no usado (redir)
descriptor: 7, offset: (  )-> no usado 
$
No se hace: descriptor involucrado en redireccion.
$
Anadida entrada 6 a la tabla ficheros abiertos
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar \(redir\)
descriptor: 1, offset: (  )-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)
~ descriptor: 3, offset: \(\d+\)-> copia descriptor 0 \(redir\)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (0)-> otro O_CREAT 
descriptor: 7, offset: (  )-> no usado 
$
--- post
sed 's/offset: ([0-9]*)/offset: (N)/' salida.txt
[ "$(stat -c %a salida.txt)" = "$(printf '%o' $((0666 & ~$(umask))))" ] && echo "modo intacto"
--- post-stdout
antes
$
escrito$
descriptor: 0, offset: (N)-> entrada estandar (redir)
descriptor: 1, offset: (N)-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)
descriptor: 3, offset: (N)-> copia descriptor 0 (redir)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (N)-> salida.txt O_CREAT O_WRONLY O_APPEND (redir)
descriptor: 7, offset: (  )-> no usado 
$
entrada estandar en fichero configuracion original (-1) 
salida estandar en fichero salida.txt (6) 
error estandar en fichero configuracion original (-1) 
$
modo intacto
=== redirecting twice leaves the first file open and unprotected; error to a new file
--- stdin
prompt $%n
override on
initredir
redout a.txt
redout b.txt
rederr err.txt
open noexiste
listopen 10
redout -reset
rederr -reset
rederr -reset
open noexiste
close 6
listopen 10
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
~ descriptor: 0, offset: \(\d+\)-> entrada estandar \(redir\)
descriptor: 1, offset: (  )-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)
~ descriptor: 3, offset: \(\d+\)-> copia descriptor 0 \(redir\)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (  )-> no usado 
descriptor: 7, offset: (  )-> no usado (redir)
descriptor: 8, offset: (  )-> no usado (redir)
descriptor: 9, offset: (  )-> no usado 
$
--- stderr
Imposible abrir fichero: No such file or directory
--- post
sed 's/offset: ([0-9]*)/offset: (N)/' a.txt; echo ==; sed 's/offset: ([0-9]*)/offset: (N)/' b.txt; echo ==; cat err.txt; m=$(printf '%o' $((0755 & ~$(umask)))); for f in a.txt b.txt err.txt; do [ "$(stat -c %a $f)" = "$m" ] && echo "$f ok"; done
--- post-stdout
$
==
$
$
$
descriptor: 0, offset: (N)-> entrada estandar (redir)
descriptor: 1, offset: (N)-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (N)-> error estandar O_WRONLY (redir)
descriptor: 3, offset: (N)-> copia descriptor 0 (redir)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (N)-> a.txt O_CREAT O_WRONLY O_APPEND 
descriptor: 7, offset: (N)-> b.txt O_CREAT O_WRONLY O_APPEND (redir)
descriptor: 8, offset: (N)-> err.txt O_CREAT O_WRONLY O_APPEND (redir)
descriptor: 9, offset: (  )-> no usado 
$
==
Imposible abrir fichero: No such file or directory
a.txt ok
b.txt ok
err.txt ok
=== redin reads the next commands from a file; a missing file is not created
--- setup
printf 'writestr 1 desde-fichero\nlistopen 7\n' > ordenes
--- stdin
prompt $%n
override on
initredir
redin noexiste
redin ordenes
writestr 1 nunca
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
Imposible hacer redireccion No such file or directory
$
$
desde-fichero$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar \(redir\)
descriptor: 1, offset: (  )-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)
~ descriptor: 3, offset: \(\d+\)-> copia descriptor 0 \(redir\)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (36)-> ordenes O_RDWR (redir)
$
--- post
ls noexiste 2>&1 | sed 's/.*No such.*/no existe/'
--- post-stdout
no existe
=== clearredir lifts the protection but leaves redirections in place
--- stdin
prompt $%n
override on
initredir
redout f
clearredir
redout
listopen 8
close 4
close 6
writestr 1 sigue-en-f
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
--- post
sed 's/offset: ([0-9]*)/offset: (N)/' f
--- post-stdout
$
$
Hay que inicializar redireccion
$
descriptor: 0, offset: (N)-> entrada estandar 
descriptor: 1, offset: (N)-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
descriptor: 3, offset: (N)-> copia descriptor 0 
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY 
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY 
descriptor: 6, offset: (N)-> f O_CREAT O_WRONLY O_APPEND 
descriptor: 7, offset: (  )-> no usado 
$
$
$
sigue-en-f$
=== redin -reset goes back to the original input where it was left
--- setup
printf 'writestr 1 desde-fichero\nredin -reset\n' > ordenes
--- stdin
prompt $%n
override on
initredir
redin ordenes
writestr 1 de-vuelta
redin
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
$
desde-fichero$
$
de-vuelta$
entrada estandar en fichero configuracion original (-1) 
salida estandar en fichero configuracion original (-1) 
error estandar en fichero configuracion original (-1) 
$
