# Start-up, dispatch, the information commands, the history, odd or too much input.
=== -p is silent; with override off only the words of the lists are internal; exit ends all
--- args
-p
otro
--- stdin
prompt $%n
numserie -? x
help
help version
version
override si
override on
version
date
authors -n
pid -p
systemd -d
limits
cwd
chdir /nonexistent
chroot /nonexistent
override off
bye
numserie
--- stdout
@startup-p
@prompt $
numserie: 	Indica la version del shell
$
Cmds practica 0: prompt numserie limits systemd command historic 
Cmds practica 1: exit bye date pid authors sysinfo help chdir open close listopen read write lseek readstr writestr makefile makedir delete deltree listfile list 
Cmds practica 2: allocate deallocate i-o memory recurse memfill memdump 
Cmds practica 3: getuid setuid prio path showenv showvar changevar changevarWrong fork ejec ejecpri pplano pplanopri splano splanopri jobs deljobs 
$
version: no encontrado
$
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ version del shell 6\.I\.02 Fecha ejecutable: \d\d/\d\d/\d{4}, \d\d:\d\d:\d\d
$
~ \d\d:\d\d:\d\d
~ \d\d/\d\d/\d{4}
$
Nombre del autor1
Nombre del autor2
$
~ Pid del padre del shell: \d+
$
  Devuan
~~~
$
*Limites*****
~~~
$
~ /.*/labsh-test[^/]*
$
$
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
--- stderr
~~~
Imposible cambiar directorio: {{ENOENT}}
Imposible cambiar directorio root: {{ENOENT}}
~~~
=== started through a name that is no file; blank lines skipped, blanks kept, ten repetitions, the tail of a longer line
--- argv0
labsh
--- stdin-noeol
prompt $%n

   	 
   command   	1
command -1
command abc
historic -clear
historic -count xxxxxxxxxxxx
historic
--- stdout
Iniciando shell..
Ejecutar labsh -p para importar el path

version del shell 6.I.02 
@prompt $
$
$
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Ejecutando hist (1):    command   	1
Demasiada recursion en hist
$
No hay elemento -1 en el historico
$
Ejecutando hist (0): prompt $%n
$
$
Numero de elementos en el historico: 1
$
0->historic -count xxxxxxxxxxxx
1->historic -count xxxxxxxxxxxx
$
=== over 4095 characters, NUL and non-text bytes, 2048 one-letter words
--- setup
{ echo 'prompt $%n'; printf 'historic -count%4080shistoric -count\n' ''; printf '\377\376\001 \033[2J\n\000historic\nx\000historic -count\n\303\050\n'; i=1; printf a; while [ $i -lt 2048 ]; do printf ' a'; i=$((i+1)); done; printf '\ncommand 6\nhistoric -count\n'; } > entrada
--- stdin-file
entrada
--- stdout
@startup
@prompt $
Numero de elementos en el historico: 2
$
Numero de elementos en el historico: 3
$
$
$
$
$
$
$
~ Ejecutando hist \(6\): a( a){2047}
$
Numero de elementos en el historico: 9
$
--- stderr
~~~
=== a full history refuses new lines but still runs them, until it is cleared
--- setup
{ echo 'prompt .'; i=1; while [ $i -lt 4095 ]; do echo 'historic -0'; i=$((i+1)); done; echo 'historic -count'; echo 'command 4094'; echo 'historic -clear'; echo 'historic -count'; } > entrada
--- stdin-file
entrada
--- stdout
@startup
~ [^@]*@[^{]*\{[^}]*\} %\) \.{4095}Comando no almacenado: {{ENOSPC}}
Numero de elementos en el historico: 4095
.Comando no almacenado: {{ENOSPC}}
Ejecutando hist (4094): historic -0
.Comando no almacenado: {{ENOSPC}}
.Numero de elementos en el historico: 1
. (no-eol)
