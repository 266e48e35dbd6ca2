# The loop itself: start-up, blank lines, end of input, the history copy
# rules, dispatch with and without override, repetition of history entries
# and bad input.
=== end of input ends the shell with status 0 and prints nothing more
--- stdin
--- stdout
@startup
@prompt  (no-eol)
=== -p imports the path silently; further arguments are ignored
--- args
-p
otro
--- stdin
--- stdout
@startup-p
@prompt  (no-eol)
=== an argument other than -p gives the hint
--- args
-q
--- stdin
--- stdout
@startup
@prompt  (no-eol)
=== started through a name that is no file, the version line has no date
--- argv0
labsh
--- stdin
--- stdout
Iniciando shell..
Ejecutar labsh -p para importar el path

version del shell 6.I.02 
@prompt  (no-eol)
=== the default prompt: system, short host name and the last component of the directory
--- setup
mkdir carpeta
--- stdin
chdir carpeta
prompt
--- stdout
@startup
~ [^@]+@[^{]+\{[^}]+\} %\) [^@]+@[^.{]+\{carpeta\} %\) %o@%m\{%B\}%b%%\)%b  --->  [^@]+@[^.{]+\{carpeta\} %\) 
~ [^@]+@[^.{]+\{carpeta\} %\)  (no-eol)
=== blank lines are neither stored nor executed
--- stdin
prompt $%n

   	 
	
historic
--- stdout
@startup
@prompt $
$
$
$
0->prompt $%n
1->historic
$
=== a line is stored with its leading and inner blanks and runs with the bare words
--- stdin
prompt $%n
   historic   	-count
historic
--- stdout
@startup
@prompt $
Numero de elementos en el historico: 2
$
0->prompt $%n
1->   historic   	-count
2->historic
$
=== a last line without newline takes over the tail of an earlier longer line
--- stdin-noeol
prompt $%n
historic -count xxxxxxxxxxxx
historic
--- stdout
@startup
@prompt $
Numero de elementos en el historico: 2
$
0->prompt $%n
1->historic -count xxxxxxxxxxxx
2->historic -count xxxxxxxxxxxx
$
=== with override off only the words of the lists run internal commands
--- stdin
prompt $%n
numserie
version
quit
time
ls
override
override on
version
numserie
time
override off
time
--- stdout
@startup
@prompt $
~ numserie del shell 6\.I\.02 Fecha ejecutable: \d\d/\d\d/\d{4}, \d\d:\d\d:\d\d
$
$
$
$
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ version del shell 6\.I\.02 Fecha ejecutable: \d\d/\d\d/\d{4}, \d\d:\d\d:\d\d
$
~ numserie del shell 6\.I\.02 Fecha ejecutable: \d\d/\d\d/\d{4}, \d\d:\d\d:\d\d
$
~ \d\d:\d\d:\d\d
$
la ejecucion de comandos que no son de las practicas esta deshabilitada
$
$
--- stderr
~~~
=== exit ends the shell with status 0 and nothing after it runs
--- stdin
prompt $%n
historic -count
bye
historic -count
--- stdout
@startup
@prompt $
Numero de elementos en el historico: 2
$
=== repetitions are limited to ten per input line, however they nest
--- stdin
prompt $%n
command 1
command 1
--- stdout
@startup
@prompt $
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Demasiada recursion en hist
$
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Ejecutando hist (1): command 1
Demasiada recursion en hist
$
=== historic and command: listings, counts and repetitions
--- stdin
prompt $%n
historic -count
historic -2
historic -0
historic -x
historic 1x
historic 1
historic 99
command -1
command abc
historic 2
command
historic -clear
historic
--- stdout
@startup
@prompt $
Numero de elementos en el historico: 2
$
1->historic -count
2->historic -2
$
$
$
$
Ejecutando hist (1): historic -count
Numero de elementos en el historico: 7
$
No hay elemento 99 en el historico
$
No hay elemento -1 en el historico
$
Ejecutando hist (0): prompt $%n
$
Ejecutando hist (2): historic -2
9->command abc
10->historic 2
$
0->prompt $%n
1->historic -count
2->historic -2
3->historic -0
4->historic -x
5->historic 1x
6->historic 1
7->historic 99
8->command -1
9->command abc
10->historic 2
11->command
$
$
0->historic
$
=== output order with both streams in one pipe
--- stdin
prompt $%n
historic -count
chdir /nonexistent
historic -count
--- merged
@startup
@prompt $
Numero de elementos en el historico: 2
$
Imposible cambiar directorio: No such file or directory
$
Numero de elementos en el historico: 4
$
=== a line longer than 4095 characters is read and run in pieces
--- stdin
prompt $%n
historic -count                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                                historic -count
historic -3
--- stdout
@startup
@prompt $
Numero de elementos en el historico: 2
$
Numero de elementos en el historico: 3
$
~ 1->historic -count {4080}
2->historic -count
3->historic -3
$
=== a line of 2048 one-letter words, run and repeated
--- stdin
prompt $%n
a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a
historic -count
command 1
--- stdout
@startup
@prompt $
$
$
Numero de elementos en el historico: 3
$
Ejecutando hist (1): a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a a
$
--- stderr
~~~
=== bytes that are not text do no harm
--- setup
{ echo 'prompt $%n'; printf '\377\376\001 \033[2J\n'; printf '\000historic\n'; printf 'x\000historic -count\n'; printf '\303\050\n'; echo 'historic -count'; } > entrada
--- stdin-file
entrada
--- stdout
@startup
@prompt $
$
$
$
$
Numero de elementos en el historico: 5
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
~ [^@]*@[^{]*\{[^}]*\} %\) \.{4095}Comando no almacenado: No space left on device
Numero de elementos en el historico: 4095
.Comando no almacenado: No space left on device
Ejecutando hist (4094): historic -0
.Comando no almacenado: No space left on device
.Numero de elementos en el historico: 1
. (no-eol)
