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
