# The search path and where: an empty path leaves names as they are; the
# path is searched in order; internal commands and ambiguity are told apart.
=== search and where
--- stdin
override on
prompt $%n
where ls
search +/bin
search -add /usr/bin
search
where ls
where cd
abbrev on
where ver
search -/bin
search -del /no-esta
search
search -clear
search xyz
search -add
uid -set
changevar -p LABSHNUEVA x
changevarWrong -a -ms HOME y
showvar HOME
--- stdout
@startup
@prompt la ejecucion de comandos que no son de las practicas esta habilitada
@prompt $
ls
$
$
$
/bin
/usr/bin
$
/bin/ls
$
cd: comando interno chdir
$
$
Abreviatura de comando no unica: ver
$
$
$
/usr/bin
$
$
Argumento incorrecto xyz
$
Imposible realizar operacion -add: {{EFAULT}}
$
~ Credencial real: \d+, \(.*\)
~ Credencial efectiva: \d+, \(.*\)
$
$
HOME MAL cambiada accediendo a traves de tercer argumento de main, por haber usado una variable estatica
$
~ Con arg3 main HOME=y\(0x[0-9a-f]+\) @0x[0-9a-f]+
~   Con environ HOME=(?!y\().*
~    Con getenv .*
$
