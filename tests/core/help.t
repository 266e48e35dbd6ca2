# Help with override on, abbreviations. Output is no terminal: one name or alias group a line.
=== help forms, checkalias, checkvalid -v, abbreviations (two rows of one command, ambiguity), override off
--- stdin
prompt $%n
override on
ayuda
ayuda -lt
help -T otros
help cd
-debug -help
help -all
checkalias
checkalias -q
checkvalid -v
abbrev on
hist -count
vers
ver
ls
help tim
override off
ver
hist
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
'ayuda [cmd|-lt|-T topic|-all]' ayuda sobre comandos
		Comandos disponibles:
~~~
showlabels 
$
information ficheros entorno memoria listamemoria procesos senales SFmemoria otros 
$

exit 
salir bye fin quit salir 
historic 
previous 
command 
cmd comando 
prompt 
aviso 
$
cd: [dir]	Cambia (o muestra) el directorio actual del shell
$
checkalias override checkvalid 
$

**********info (information) 
~~~
**********files (ficheros) 
~~~
**********environ (entorno) 
~~~
**********memory (memoria) 
~~~
**********memlist (listamemoria) 
~~~
**********processes (procesos) 
~~~
**********signals (senales) 
~~~
**********memoryFS (SFmemoria) 
~~~
**********others (otros) 
~~~
$

***version: numserie 
~~~
***checkvalid: 
$
checkalias override checkvalid 
$
Todos los comandos validos existen
prompt(0,1) numserie(0,2) limits(0,3) systemd(0,4) command(0,5) historic(0,6) version(1,1) exit(1,2) bye(1,3) date(1,4) pid(1,5) authors(1,6) historic(1,7) limits(1,8) systemd(1,9) command(1,10) help(1,12) version(2,1) exit(2,2) quit(2,3) day(2,4) time(2,5) getpid(2,6) getppid(2,7) previous(2,8) limits(2,9) systemd(2,10) cmd(2,11) sysinfo(2,12) help(2,13) numserie(3,1) salir(3,2) fin(3,3) fecha(3,4) pid(3,5) ppid(3,6) autores(3,7) historic(3,8) limites(3,9) sistemd(3,10) comando(3,11) infosis(3,12) ayuda(3,13) exit(4,0) bye(4,1) date(4,2) pid(4,3) authors(4,4) sysinfo(4,5) help(4,6) chdir(4,7) open(4,8) close(4,9) listopen(4,10) read(4,11) write(4,12) lseek(4,13) readstr(4,14) writestr(4,15) makefile(4,16) makedir(4,17) delete(4,18) deltree(4,19) listfile(4,20) list(4,21) cd(5,0) chroot(5,1) pwd(5,2) create(5,3) delete(5,4) stat(5,5) list(5,6) deltree(5,7) open(5,8) close(5,9) dup(5,10) dup2(5,11) readstr(5,12) writestr(5,13) lseek(5,14) lnk(5,15) chdir(6,0) changeroot(6,1) getcwd(6,2) makefile(6,3) makedir(6,4) erase(6,5) listfile(6,6) listdir(6,7) listrec(6,8) dir(6,9) listrev(6,10) delrec(6,11) open(6,12) close(6,13) dup(6,14) dup2(6,15) readstring(6,16) writestring(6,17) hardlink(6,18) symlink(6,19) chdir(7,0) chroot(7,1) pwd(7,2) create(7,3) erase(7,4) dir(7,5) setdirparams(7,6) getdirparams(7,7) open(7,8) close(7,9) dup(7,10) dup2(7,11) readstring(7,12) writestring(7,13) hardlink(7,14) symlink(7,15) carpeta(8,0) crear(8,2) borrar(8,3) listfich(8,4) listar(8,5) borrarrec(8,6) abrir(8,7) cerrar(8,8) duplicar(8,9) duplicar2(8,10) leercad(8,11) escribircad(8,12) enlacereal(8,13) enlacesym(8,14) carpeta(9,0) crearfich(9,2) creardir(9,3) borrar(9,4) ficheros(9,5) opcionesficheros(9,6) veropcionesficheros(9,7) borrarrec(9,8) abrir(9,9) cerrar(9,10) duplicar(9,11) duplicar2(9,12) leercad(9,13) escribircad(9,14) enlace(9,15) allocate(10,0) deallocate(10,1) i-o(10,2) memory(10,3) recurse(10,4) memfill(10,5) memdump(10,6) recurse(11,0) memdump(11,1) memfill(11,2) read(11,3) write(11,4) i-o(11,5) allocate(11,6) deallocate(11,7) mem(11,8) memcopy(11,9) strcopy(11,10) recurse(12,0) dumpmem(12,1) fillmem(12,2) sysread(12,3) syswrite(12,4) readfile(12,5) writefile(12,6) memmalloc(12,7) memcreateshared(12,8) memshared(12,9) memmmap(12,10) memdemalloc(12,11) memdeshared(12,12) memdemmap(12,13) delkey(12,14) memory(12,16) recursiva(13,0) volcarmem(13,1) llenarmem(13,2) leer(13,3) escribir(13,4) e-s(13,5) asignar(13,6) desasignar(13,7) copiarstring(13,9) entorno(13,10) varentorno(13,11) cambiarvarMal(13,12) getuid(14,0) setuid(14,1) prio(14,2) path(14,3) showenv(14,4) showvar(14,5) changevar(14,6) changevarWrong(14,7) fork(14,8) ejec(14,9) ejecpri(14,10) pplano(14,11) pplanopri(14,12) splano(14,13) splanopri(14,14) jobs(14,15) deljobs(14,16) showenv(15,0) envvar(15,1) changevarWrong(15,2) priority(15,3) search(15,4) where(15,5) fork(15,6) exec(15,7) uid(15,8) listjobs(15,9) deljobs(15,10) pipe(15,11) environ(16,0) showvar(16,1) changevar(16,2) changevarWrong(16,3) subsvar(16,4) prio(16,5) path(16,6) where(16,7) getuid(16,8) setuid(16,9) fork(16,10) exec(16,11) execpri(16,12) fg(16,13) fgpri(16,14) back(16,15) backpri(16,16) jobs(16,17) backpipe(16,18) entorno(17,0) varentorno(17,1) cambiarvarMal(17,2) path(17,3) cual(17,4) fork(17,5) exec(17,6) credenciales(17,7) listarprocs(17,8) borrarprocs(17,9) concatenar(17,10) $
$
Numero de elementos en el historico: 13
$
~ vers del shell 6\.I\.02 .*
$
Abreviatura de comando no unica: ver
$
Abreviatura de comando no unica: ls
$
abreviatura no unica: tim
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
Abreviatura de comando no unica: ver
$
$
--- stderr
~~~
