# Redirection of the shell's own standard streams. Files stay open when
# redirected again, and positions keep their mark after -reset.
=== refused before initredir, into files and back, input from a file
--- setup
printf 'antes\n' > a.txt
printf 'writestr 1 desde-fichero\nredin -reset\n' > ordenes
--- stdin
prompt $
override on
redout f
clearredir
initredir
initredir
close 1
redout a.txt
writestr 1 escrito
redout b.txt
rederr err.txt
open noexiste
redout
close 6
redout -reset
rederr -reset
listopen 10
redin noexiste
redin ordenes
writestr 1 de-vuelta
clearredir
close 4
redout
--- stdout
@startup
@prompt $la ejecucion de comandos que no son de las practicas esta habilitada
$Hay que inicializar redireccion
$redireccion no inicializada
$$redireccion ya inicializada
$No se hace: descriptor involucrado en redireccion.
~ \$\$\$descriptor: 0, offset: \(\d+\)-> entrada estandar \(redir\)
descriptor: 1, offset: (  )-> salida estandar O_WRONLY (redir)
descriptor: 2, offset: (  )-> error estandar O_WRONLY (redir)
~ descriptor: 3, offset: \(\d+\)-> copia descriptor 0 \(redir\)
descriptor: 4, offset: (  )-> copia descriptor 1 O_WRONLY (redir)
descriptor: 5, offset: (  )-> copia descriptor 2 O_WRONLY (redir)
descriptor: 6, offset: (  )-> no usado 
descriptor: 7, offset: (  )-> no usado (redir)
descriptor: 8, offset: (  )-> no usado (redir)
descriptor: 9, offset: (  )-> no usado 
$Imposible hacer redireccion {{ENOENT}}
$$desde-fichero$$de-vuelta$$$Hay que inicializar redireccion
$ (no-eol)
--- post
cat a.txt b.txt err.txt
[ "$(stat -c %a b.txt)" = "$(printf '%o' $((0755 & ~$(umask))))" ] && [ ! -e noexiste ] && echo "modo 0755, nada creado"
--- post-stdout
antes
$escrito$$$$entrada estandar en fichero configuracion original (-1) 
salida estandar en fichero b.txt (7) 
error estandar en fichero err.txt (8) 
$$Imposible abrir fichero: {{ENOENT}}
modo 0755, nada creado
=== a script's own input: readstr and lseek on descriptor 0 and the table's offset start at the next line
--- stdin
override on
readstr 0 11
hola mundo
lseek 0 0 SEEK_CUR
listopen 1
--- stdout
@startup
@prompt la ejecucion de comandos que no son de las practicas esta habilitada
@prompt Leidos 11 bytes del descriptor 0
hola mundo

@prompt Descriptor 0 posicionado en 55
@prompt descriptor: 0, offset: (66)-> entrada estandar 
~ .* (no-eol)
