# The information commands and the working and root directory.
=== date, day and time and their aliases
--- stdin
prompt $%n
override on
date
date -d
date -t
date -x
day
dia -t
time
hora
hour x
fecha -d
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ \d\d:\d\d:\d\d
~ \d\d/\d\d/\d{4}
$
~ \d\d/\d\d/\d{4}
$
~ \d\d:\d\d:\d\d
$
$
~ \d\d/\d\d/\d{4}
$
~ \d\d/\d\d/\d{4}
$
~ \d\d:\d\d:\d\d
$
~ \d\d:\d\d:\d\d
$
~ \d\d:\d\d:\d\d
$
~ \d\d/\d\d/\d{4}
$
=== the pid of the shell and of its parent
--- stdin
prompt [%p]
override on
pid
pid -p
pid -x
ppid
getppid
--- stdout
@startup
~ [^@]*@[^{]*\{[^}]*\} %\) \[\d+\]la ejecucion de comandos que no son de las practicas esta habilitada
~ \[(\d+)\]Pid de shell: \1
~ \[\d+\]Pid del padre del shell: \d+
~ \[(\d+)\]Pid de shell: \1
~ \[\d+\]Pid del padre del shell: \d+
~ \[\d+\]Pid del padre del shell: \d+
~ \[\d+\] (no-eol)
=== authors
--- stdin
prompt $%n
authors
authors -l
authors -n
authors -x
--- stdout
@startup
@prompt $
Nombre del autor1: login del autor1
Nombre del autor2: login del autor2
$
login del autor1
login del autor2
$
Nombre del autor1
Nombre del autor2
$
$
=== systemd, its list of distributions and an unknown option
--- stdin
prompt $%n
systemd
systemd -d
systemd -x
--- stdout
@startup
@prompt $
systemd es el sistema de arranque (init) y gestor de servicios de la mayoria
de las distribuciones de Linux actuales. Se ejecuta como proceso 1: arranca el
sistema, lanza y vigila los servicios (unidades) y se ocupa tambien del registro
de mensajes, las sesiones de usuario, los dispositivos y parte de la red.
Sus partidarios valoran el arranque en paralelo y la configuracion uniforme; sus
criticos, que reuna en un solo proyecto tareas que antes hacian programas
pequenos e independientes. Algunas distribuciones siguen sin usarlo:
  Devuan
  Gentoo
  Alpine Linux
  Void Linux
  Slackware
  Artix Linux
  antiX
  MX Linux
  PCLinuxOS
  Obarun
  Chimera Linux
  GNU Guix System
  ...
$
  Devuan
  Gentoo
  Alpine Linux
  Void Linux
  Slackware
  Artix Linux
  antiX
  MX Linux
  PCLinuxOS
  Obarun
  Chimera Linux
  GNU Guix System
  ...
$
$
=== numserie ignores its arguments and names itself as typed
--- stdin
prompt $%n
numserie a b
--- stdout
@startup
@prompt $
~ numserie del shell 6\.I\.02 Fecha ejecutable: \d\d/\d\d/\d{4}, \d\d:\d\d:\d\d
$
=== sysinfo
--- stdin
prompt $%n
sysinfo
--- stdout
@startup
@prompt $
~ [^ ]+ \([^)]+\), OS: [^-]+-.+-.+
$
=== limits: one line per resource, in order
--- stdin
prompt $%n
limits
--- stdout
@startup
@prompt $
*Limites*****
~     Espacio direcciones: \d+ 4Kpages \(soft\) \d+ 4Kpages
~     Espacio datos: \d+ Megabytes \(soft\) \d+ Megabytes
~     Tamano fichero: \d+ Megabytes \(soft\) \d+ Megabytes
~     Ficheros abiertos: \d+ ficheros \(soft\) \d+ ficheros
~     Tamano de la pila: \d+ Kilobytes \(soft\) \d+ Kilobytes
~     Tamano del fichero core: \d+ Kilobytes \(soft\) \d+ Kilobytes
~     RAM susceptible de lock: \d+ Kilobytes \(soft\) \d+ Kilobytes
~     Procesos para este usuario: \d+ procesos \(soft\) \d+ procesos
~     Tiempo de CPU: \d+ secs \(soft\) \d+ secs
$
=== chdir, pwd and their failures
--- setup
mkdir -p uno/dos
--- stdin
prompt $%n
override on
chdir
chdir uno
pwd x
cd dos
carpeta ..
cwd
chdir /nonexistent
chdir uno/dos
getcwd
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ /.*/labsh-test[^/]*
$
$
~ /.*/labsh-test[^/]*/uno
$
$
$
~ /.*/labsh-test[^/]*/uno
$
$
$
~ /.*/labsh-test[^/]*/uno
$
--- stderr
Imposible cambiar directorio: No such file or directory
Imposible cambiar directorio: No such file or directory
=== chroot: with no directory it shows the current one; failures leave everything as it was
--- stdin
prompt $%n
override on
chroot
chroot /nonexistent
changeroot
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ /.*/labsh-test[^/]*
$
$
~ /.*/labsh-test[^/]*
$
--- stderr
Imposible cambiar directorio root: No such file or directory
=== chroot without privilege fails
--- requires
nonroot
--- stdin
prompt $%n
override on
chroot .
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
--- stderr
Imposible cambiar directorio root: Operation not permitted
=== chroot changes the root and not the working directory, which is left outside it
--- requires
root
--- setup
mkdir raiz
--- stdin
prompt $%n
override on
chroot raiz
pwd
chdir raiz
pwd
chdir ..
pwd
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
$
$
/
$
$
/
$
--- stderr
Imposible obtener direrctorio actual: No such file or directory
