# Help in every form, the help request after any word, the listings of the
# command table, abbreviations and the check of the assignment lists.
# Standard output is no terminal here, so every name and every group of
# aliases of a listing stands on a line of its own.

=== with override off help lists the current assignment lists and knows only their words
--- stdin
prompt $%n
help
help version
help numserie
help -lt
ls -?
historic -help
historic -count -?
numserie -? x
ayuda
--- stdout
@startup
@prompt $
Cmds practica 0: prompt numserie limits systemd command historic 
Cmds practica 1: exit bye date pid authors sysinfo help chdir open close listopen read write lseek readstr writestr makefile makedir delete deltree listfile list 
Cmds practica 2: allocate deallocate i-o memory recurse memfill memdump 
Cmds practica 3: getuid setuid prio path showenv showvar changevar changevarWrong fork ejec ejecpri pplano pplanopri splano splanopri jobs deljobs 
$
version: no encontrado
$
numserie: 	Indica la version del shell
$
-lt: no encontrado
$
ls: no encontrado
$
historic: [-clear|-count|-N|N]	Muestra (o borra)el historico de comandos
	-clear: borra el historico
	-count: dimension del historico
	-N: muestra los N ultimos
	N: repite el comando N
$
Numero de elementos en el historico: 8
$
numserie: 	Indica la version del shell
$
$
--- stderr
~~~
=== help with no argument lists every command of every topic, named as typed
--- stdin
prompt $%n
override on
help
ayuda
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
'help [cmd|-lt|-T topic|-all]' ayuda sobre comandos
		Comandos disponibles:

version 
numserie 
exit 
salir bye fin quit salir 
date 
fecha 
day 
dia 
time 
hora hour 
pid 
getpid 
ppid 
getppid 
authors 
autores 
systemd 
sistemd 
historic 
previous 
command 
cmd comando 
prompt 
aviso 
sysinfo 
infosis 
help 
ayuda 
limits 
limites 
chdir 
cd carpeta 
chroot 
changeroot caambiarraiz 
pwd 
cwd getcwd 
open 
abrir 
close 
cerrar 
listopen 
listarabiertos 
dup 
duplicar 
dup2 
duplicar2 
read 
sysread leer 
write 
syswrite escribir 
lseek 
posfile posicion 
readstr 
readstring leercad 
writestr 
escribircad writestring 
hardlink 
enlacereal 
symlink 
enlacesym 
link 
lnk enlace 
create 
crear 
makefile 
crearfich 
makedir 
creardir 
delete 
borrar erase 
deltree 
borrarrec delrec 
stat 
listfich listfile 
list 
listar showdir 
listdir 
listfolder 
listrec 
reclist 
listrev 
revlist 
setdirparams 
opcionesficheros 
getdirparams 
veropcionesficheros 
dir 
ficheros 
recurse 
recursiva 
i-o 
e-s i/o e/s 
readfile 
leerfichero 
writefile 
escribirfichero 
memdump 
dumpmem volcarmem 
memfill 
fillmem llenarmem 
deallocate 
dealloc desasignar 
allocate 
alloc asignar 
malloc 
Mmalloc 
mmap 
Mmmap 
shared 
Mshared 
memcreateshared 
createshared 
memshared 
mshared 
memdeshared 
dememshared 
memmalloc 
mmalloc 
memdemalloc 
dememmalloc 
memmmap 
mmmap 
memdemmap 
dememmmap 
free 
liberar 
delkey 
borrarclave 
mem 
memory memoria 
showenv 
entorno environ 
envvar 
varentorno 
showvar 
mostrarvar 
changevar 
cambiarvar 
subsvar 
susvar substitutevar sustituirvar 
changevarWrong 
cambiarvarMal 
memcopy 
copiarmem 
stringcopy 
strcopy copiarstring memstr 
abbrev 
abreviaturas 
where 
donde cual 
priority 
prioridad prio 
redin 
redentrada 
redout 
redsalida 
rederr 
rederror 
initredir 
habilitarredireccion 
clearredir 
deshabilitarredireccion 
getuid 
getuseruid 
setuid 
setuseruid 
uid 
credenciales 
search 
path 
fork 
crearproceso 
execute 
ejec exec 
executepri 
ejecpri execpri 
executeas 
ejecas execas 
fg 
pplano 
fgpri 
pplanopri 
back 
splano 
backpri 
splanopri 
fgas 
pplanoas 
backas 
splanoas 
listjobs 
jobs listarprocs 
deljobs 
borrarprocs 
job 
proc 
pipe 
concatenar 
backpipe 
concatenarsp 
sigdefault 
defecto 
sigignore 
ignorar 
sigmask 
enmascarar 
sigunmask 
desenmascarar 
sighandler 
manejador 
sigaction 
signal senal 
sigprocmask 
sigprocmask 
limitresend 
limitereenvios 
siginfo 
infosenales 
sigcount 
contadorsenales 
sigaltstack 
pilasenales 
loop 
bucle 
segmentation 
segv 
fpe 
divby0 
usesignals 
usarsenales 
protectsegv 
protegersegmentation 
protectfpe 
protegerfpe 
assign 
label 
memfs 
sfmemoria 
memfs-list 
mfslist 
memfs-format 
format 
memfs-cp 
copy 
memfs-mv 
move 
memfs-del 
remove 
memfs-find 
mfsfind 
memfs-label 
showlabels 
$
'ayuda [cmd|-lt|-T topic|-all]' ayuda sobre comandos
		Comandos disponibles:

version 
~~~
showlabels 
$
=== topics: their names, the alternative names when typed as ayuda, and -T
--- stdin
prompt $%n
override on
help -lt
ayuda -lt
help -T
help -T nada
help -T files memoria
help -T SFmemoria
help -debug
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
info files environ memory memlist processes signals memoryFS others 
$
information ficheros entorno memoria listamemoria procesos senales SFmemoria otros 
$

$

$

chdir 
cd carpeta 
chroot 
changeroot caambiarraiz 
pwd 
cwd getcwd 
open 
abrir 
close 
cerrar 
listopen 
listarabiertos 
dup 
duplicar 
dup2 
duplicar2 
read 
sysread leer 
write 
syswrite escribir 
lseek 
posfile posicion 
readstr 
readstring leercad 
writestr 
escribircad writestring 
hardlink 
enlacereal 
symlink 
enlacesym 
link 
lnk enlace 
create 
crear 
makefile 
crearfich 
makedir 
creardir 
delete 
borrar erase 
deltree 
borrarrec delrec 
stat 
listfich listfile 
list 
listar showdir 
listdir 
listfolder 
listrec 
reclist 
listrev 
revlist 
setdirparams 
opcionesficheros 
getdirparams 
veropcionesficheros 
dir 
ficheros 
recurse 
recursiva 
i-o 
e-s i/o e/s 
readfile 
leerfichero 
writefile 
escribirfichero 
memdump 
dumpmem volcarmem 
memfill 
fillmem llenarmem 
$

assign 
label 
memfs 
sfmemoria 
memfs-list 
mfslist 
memfs-format 
format 
memfs-cp 
copy 
memfs-mv 
move 
memfs-del 
remove 
memfs-find 
mfsfind 
memfs-label 
showlabels 
$
checkalias override checkvalid 
$
=== help -all lists every topic with its commands and their aliases
--- stdin
prompt $%n
override on
help -all
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$

**********info (information) 

version 
numserie 
date 
fecha 
day 
dia 
time 
hora hour 
pid 
getpid 
authors 
autores 
systemd 
sistemd 
sysinfo 
infosis 
help 
ayuda 
limits 
limites 

**********files (ficheros) 

chdir 
cd carpeta 
chroot 
changeroot caambiarraiz 
pwd 
cwd getcwd 
open 
abrir 
close 
cerrar 
listopen 
listarabiertos 
dup 
duplicar 
dup2 
duplicar2 
read 
sysread leer 
write 
syswrite escribir 
lseek 
posfile posicion 
readstr 
readstring leercad 
writestr 
escribircad writestring 
hardlink 
enlacereal 
symlink 
enlacesym 
link 
lnk enlace 
create 
crear 
makefile 
crearfich 
makedir 
creardir 
delete 
borrar erase 
deltree 
borrarrec delrec 
stat 
listfich listfile 
list 
listar showdir 
listdir 
listfolder 
listrec 
reclist 
listrev 
revlist 
setdirparams 
opcionesficheros 
getdirparams 
veropcionesficheros 
dir 
ficheros 

**********environ (entorno) 

showenv 
entorno environ 
envvar 
varentorno 
showvar 
mostrarvar 
changevar 
cambiarvar 
subsvar 
susvar substitutevar sustituirvar 
changevarWrong 
cambiarvarMal 

**********memory (memoria) 

recurse 
recursiva 
i-o 
e-s i/o e/s 
readfile 
leerfichero 
writefile 
escribirfichero 
memdump 
dumpmem volcarmem 
memfill 
fillmem llenarmem 

**********memlist (listamemoria) 

deallocate 
dealloc desasignar 
allocate 
alloc asignar 
malloc 
Mmalloc 
mmap 
Mmmap 
shared 
Mshared 
memcreateshared 
createshared 
memshared 
mshared 
memdeshared 
dememshared 
memmalloc 
mmalloc 
memdemalloc 
dememmalloc 
memmmap 
mmmap 
memdemmap 
dememmmap 
free 
liberar 
delkey 
borrarclave 
mem 
memory memoria 
memcopy 
copiarmem 
stringcopy 
strcopy copiarstring memstr 

**********processes (procesos) 

ppid 
getppid 
abbrev 
abreviaturas 
where 
donde cual 
priority 
prioridad prio 
redin 
redentrada 
redout 
redsalida 
rederr 
rederror 
initredir 
habilitarredireccion 
clearredir 
deshabilitarredireccion 
getuid 
getuseruid 
setuid 
setuseruid 
uid 
credenciales 
search 
path 
fork 
crearproceso 
execute 
ejec exec 
executepri 
ejecpri execpri 
executeas 
ejecas execas 
fg 
pplano 
fgpri 
pplanopri 
back 
splano 
backpri 
splanopri 
fgas 
pplanoas 
backas 
splanoas 
listjobs 
jobs listarprocs 
deljobs 
borrarprocs 
job 
proc 
pipe 
concatenar 
backpipe 
concatenarsp 

**********signals (senales) 

sigdefault 
defecto 
sigignore 
ignorar 
sigmask 
enmascarar 
sigunmask 
desenmascarar 
sighandler 
manejador 
sigaction 
signal senal 
sigprocmask 
sigprocmask 
limitresend 
limitereenvios 
siginfo 
infosenales 
sigcount 
contadorsenales 
sigaltstack 
pilasenales 
loop 
bucle 
segmentation 
segv 
fpe 
divby0 
usesignals 
usarsenales 
protectsegv 
protegersegmentation 
protectfpe 
protegerfpe 

**********memoryFS (SFmemoria) 

assign 
label 
memfs 
sfmemoria 
memfs-list 
mfslist 
memfs-format 
format 
memfs-cp 
copy 
memfs-mv 
move 
memfs-del 
remove 
memfs-find 
mfsfind 
memfs-label 
showlabels 

**********others (otros) 

exit 
salir bye fin quit salir 
historic 
previous 
command 
cmd comando 
prompt 
aviso 
$
=== help about one command resolves aliases; unknown words are not found
--- stdin
prompt $%n
override on
help cd
help numserie
help version
help nada
nada -help
version -?
version x -?
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
cd: [dir]	Cambia (o muestra) el directorio actual del shell
$
numserie: 	Indica la version del shell
$
version: 	Indica la version del shell
$
nada: no encontrado
$
nada: no encontrado
$
version: 	Indica la version del shell
$
~ version del shell 6\.I\.02 .*
$
=== a help request whose first word is an option of help itself
--- stdin
prompt $%n
override on
-T -?
-debug -help
-lt -?
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$

$
checkalias override checkvalid 
$
information ficheros entorno memoria listamemoria procesos senales SFmemoria otros 
$
=== checkalias lists the whole command table with the aliases of each command
--- stdin
prompt $%n
override on
checkalias
checkalias -q
checkalias otro
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$

***version: numserie 
***exit: salir bye fin quit salir 
***date: fecha 
***day: dia 
***time: hora hour 
***pid: getpid 
***ppid: getppid 
***authors: autores 
***systemd: sistemd 
***historic: previous 
***command: cmd comando 
***prompt: aviso 
***sysinfo: infosis 
***help: ayuda 
***limits: limites 
***chdir: cd carpeta 
***chroot: changeroot caambiarraiz 
***pwd: cwd getcwd 
***open: abrir 
***close: cerrar 
***listopen: listarabiertos 
***dup: duplicar 
***dup2: duplicar2 
***read: sysread leer 
***write: syswrite escribir 
***lseek: posfile posicion 
***readstr: readstring leercad 
***writestr: escribircad writestring 
***hardlink: enlacereal 
***symlink: enlacesym 
***link: lnk enlace 
***create: crear 
***makefile: crearfich 
***makedir: creardir 
***delete: borrar erase 
***deltree: borrarrec delrec 
***stat: listfich listfile 
***list: listar showdir 
***listdir: listfolder 
***listrec: reclist 
***listrev: revlist 
***setdirparams: opcionesficheros 
***getdirparams: veropcionesficheros 
***dir: ficheros 
***recurse: recursiva 
***i-o: e-s i/o e/s 
***readfile: leerfichero 
***writefile: escribirfichero 
***memdump: dumpmem volcarmem 
***memfill: fillmem llenarmem 
***deallocate: dealloc desasignar 
***allocate: alloc asignar 
***malloc: Mmalloc 
***mmap: Mmmap 
***shared: Mshared 
***memcreateshared: createshared 
***memshared: mshared 
***memdeshared: dememshared 
***memmalloc: mmalloc 
***memdemalloc: dememmalloc 
***memmmap: mmmap 
***memdemmap: dememmmap 
***free: liberar 
***delkey: borrarclave 
***mem: memory memoria 
***showenv: entorno environ 
***envvar: varentorno 
***showvar: mostrarvar 
***changevar: cambiarvar 
***subsvar: susvar substitutevar sustituirvar 
***changevarWrong: cambiarvarMal 
***memcopy: copiarmem 
***stringcopy: strcopy copiarstring memstr 
***abbrev: abreviaturas 
***where: donde cual 
***priority: prioridad prio 
***redin: redentrada 
***redout: redsalida 
***rederr: rederror 
***initredir: habilitarredireccion 
***clearredir: deshabilitarredireccion 
***getuid: getuseruid 
***setuid: setuseruid 
***uid: credenciales 
***search: path 
***fork: crearproceso 
***execute: ejec exec 
***executepri: ejecpri execpri 
***executeas: ejecas execas 
***fg: pplano 
***fgpri: pplanopri 
***back: splano 
***backpri: splanopri 
***fgas: pplanoas 
***backas: splanoas 
***listjobs: jobs listarprocs 
***deljobs: borrarprocs 
***job: proc 
***pipe: concatenar 
***backpipe: concatenarsp 
***sigdefault: defecto 
***sigignore: ignorar 
***sigmask: enmascarar 
***sigunmask: desenmascarar 
***sighandler: manejador 
***sigaction: signal senal 
***sigprocmask: sigprocmask 
***limitresend: limitereenvios 
***siginfo: infosenales 
***sigcount: contadorsenales 
***sigaltstack: pilasenales 
***loop: bucle 
***segmentation: segv 
***fpe: divby0 
***usesignals: usarsenales 
***protectsegv: protegersegmentation 
***protectfpe: protegerfpe 
***assign: label 
***memfs: sfmemoria 
***memfs-list: mfslist 
***memfs-format: format 
***memfs-cp: copy 
***memfs-mv: move 
***memfs-del: remove 
***memfs-find: mfsfind 
***memfs-label: showlabels 
***checkalias: 
***override: 
***checkvalid: 
$
checkalias override checkvalid 
$

$
=== checkalias, checkvalid and abbrev are external programs while override is off
--- stdin
prompt $%n
checkalias
checkvalid
abbrev
--- stdout
@startup
@prompt $
$
$
$
--- stderr
~~~
=== checkvalid reads its own check inverted and -v lists the words that exist
--- stdin
prompt $%n
override on
checkvalid
checkvalid -v
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Todos los comandos validos existen
$
Todos los comandos validos existen
prompt(0,1) numserie(0,2) limits(0,3) systemd(0,4) command(0,5) historic(0,6) version(1,1) exit(1,2) bye(1,3) date(1,4) pid(1,5) authors(1,6) historic(1,7) limits(1,8) systemd(1,9) command(1,10) help(1,12) version(2,1) exit(2,2) quit(2,3) day(2,4) time(2,5) getpid(2,6) getppid(2,7) previous(2,8) limits(2,9) systemd(2,10) cmd(2,11) sysinfo(2,12) help(2,13) numserie(3,1) salir(3,2) fin(3,3) fecha(3,4) pid(3,5) ppid(3,6) autores(3,7) historic(3,8) limites(3,9) sistemd(3,10) comando(3,11) infosis(3,12) ayuda(3,13) exit(4,0) bye(4,1) date(4,2) pid(4,3) authors(4,4) sysinfo(4,5) help(4,6) chdir(4,7) open(4,8) close(4,9) listopen(4,10) read(4,11) write(4,12) lseek(4,13) readstr(4,14) writestr(4,15) makefile(4,16) makedir(4,17) delete(4,18) deltree(4,19) listfile(4,20) list(4,21) cd(5,0) chroot(5,1) pwd(5,2) create(5,3) delete(5,4) stat(5,5) list(5,6) deltree(5,7) open(5,8) close(5,9) dup(5,10) dup2(5,11) readstr(5,12) writestr(5,13) lseek(5,14) lnk(5,15) chdir(6,0) changeroot(6,1) getcwd(6,2) makefile(6,3) makedir(6,4) erase(6,5) listfile(6,6) listdir(6,7) listrec(6,8) dir(6,9) listrev(6,10) delrec(6,11) open(6,12) close(6,13) dup(6,14) dup2(6,15) readstring(6,16) writestring(6,17) hardlink(6,18) symlink(6,19) chdir(7,0) chroot(7,1) pwd(7,2) create(7,3) erase(7,4) dir(7,5) setdirparams(7,6) getdirparams(7,7) open(7,8) close(7,9) dup(7,10) dup2(7,11) readstring(7,12) writestring(7,13) hardlink(7,14) symlink(7,15) carpeta(8,0) crear(8,2) borrar(8,3) listfich(8,4) listar(8,5) borrarrec(8,6) abrir(8,7) cerrar(8,8) duplicar(8,9) duplicar2(8,10) leercad(8,11) escribircad(8,12) enlacereal(8,13) enlacesym(8,14) carpeta(9,0) crearfich(9,2) creardir(9,3) borrar(9,4) ficheros(9,5) opcionesficheros(9,6) veropcionesficheros(9,7) borrarrec(9,8) abrir(9,9) cerrar(9,10) duplicar(9,11) duplicar2(9,12) leercad(9,13) escribircad(9,14) enlace(9,15) allocate(10,0) deallocate(10,1) i-o(10,2) memory(10,3) recurse(10,4) memfill(10,5) memdump(10,6) recurse(11,0) memdump(11,1) memfill(11,2) read(11,3) write(11,4) i-o(11,5) allocate(11,6) deallocate(11,7) mem(11,8) memcopy(11,9) strcopy(11,10) recurse(12,0) dumpmem(12,1) fillmem(12,2) sysread(12,3) syswrite(12,4) readfile(12,5) writefile(12,6) memmalloc(12,7) memcreateshared(12,8) memshared(12,9) memmmap(12,10) memdemalloc(12,11) memdeshared(12,12) memdemmap(12,13) delkey(12,14) memory(12,16) recursiva(13,0) volcarmem(13,1) llenarmem(13,2) leer(13,3) escribir(13,4) e-s(13,5) asignar(13,6) desasignar(13,7) copiarstring(13,9) entorno(13,10) varentorno(13,11) cambiarvarMal(13,12) getuid(14,0) setuid(14,1) prio(14,2) path(14,3) showenv(14,4) showvar(14,5) changevar(14,6) changevarWrong(14,7) fork(14,8) ejec(14,9) ejecpri(14,10) pplano(14,11) pplanopri(14,12) splano(14,13) splanopri(14,14) jobs(14,15) deljobs(14,16) showenv(15,0) envvar(15,1) changevarWrong(15,2) priority(15,3) search(15,4) where(15,5) fork(15,6) exec(15,7) uid(15,8) listjobs(15,9) deljobs(15,10) pipe(15,11) environ(16,0) showvar(16,1) changevar(16,2) changevarWrong(16,3) subsvar(16,4) prio(16,5) path(16,6) where(16,7) getuid(16,8) setuid(16,9) fork(16,10) exec(16,11) execpri(16,12) fg(16,13) fgpri(16,14) back(16,15) backpri(16,16) jobs(16,17) backpipe(16,18) entorno(17,0) varentorno(17,1) cambiarvarMal(17,2) path(17,3) cual(17,4) fork(17,5) exec(17,6) credenciales(17,7) listarprocs(17,8) borrarprocs(17,9) concatenar(17,10) $
=== override only changes with on and off
--- stdin
prompt $%n
override
override si
override on
override
override off
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
la ejecucion de comandos que no son de las practicas esta habilitada
$
la ejecucion de comandos que no son de las practicas esta habilitada
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
=== abbreviations: unique prefixes of a name or of an alias, and the two-row rule
--- stdin
prompt $%n
override on
abbrev
abbrev on
abbrev
hist -count
vers
ver
tim
ls
pw
sy
ex
lim
he -T
abb
hou
cd
syste -d
help tim
help hou
abbrev off
abbrev
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Uso de abreviaturas de comandos esta deshabilitado
$
$
Uso de abreviaturas de comandos esta habilitado
$
Numero de elementos en el historico: 6
$
~ vers del shell 6\.I\.02 .*
$
Abreviatura de comando no unica: ver
$
Abreviatura de comando no unica: tim
$
Abreviatura de comando no unica: ls
$
Abreviatura de comando no unica: pw
$
Abreviatura de comando no unica: sy
$
Abreviatura de comando no unica: ex
$
Abreviatura de comando no unica: lim
$

$
Uso de abreviaturas de comandos esta habilitado
$
~ \d\d:\d\d:\d\d
$
~ /.*
$
  Devuan
~~~
  ...
$
abreviatura no unica: tim
$
hou: 	Muestra la hora actual
$
$
Uso de abreviaturas de comandos esta deshabilitado
$
=== abbreviations with override off: ambiguity is reported, a resolved word still needs the lists
--- stdin
prompt $%n
override on
abbrev on
override off
ver
hist
checkv
override on
checkv
hist -count
abbrev off
hist
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
Abreviatura de comando no unica: ver
$
$
$
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
Numero de elementos en el historico: 10
$
$
$
--- stderr
~~~
