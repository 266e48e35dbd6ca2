# stat: short and long lines, access times, links, the special permission
# bits and names that cannot be examined.
=== short lines, access dates and names that cannot be examined
--- setup
printf 'hola' > f
touch -a -t 202001020304 f
touch -m -t 201912312359 f
--- stdin
prompt $%n
override on
stat f
stat -acc f
stat nada f
stat f -long
listfich -acc -acc f
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
       4  f
$
       4  2020/01/02-03:04 f
$
 ****error al acceder a nada:No such file or directory
       4  f
$
       4  f
 ****error al acceder a -long:No such file or directory
$
       4  2020/01/02-03:04 f
$
=== with override off the alias listfile is in the lists
--- setup
printf 'hola' > f
--- stdin
prompt $%n
listfile f
stat f
--- stdout
@startup
@prompt $
       4  f
$
$
--- stderr
~~~
=== stat with no names prints the working directory
--- setup
mkdir carpeta
--- stdin
prompt $%n
override on
chdir carpeta
stat
stat -long -link -acc
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
~ /.*/carpeta
$
~ /.*/carpeta
$
=== long lines: dates, links, inode, owner, permissions and size
--- setup
printf 'hola' > f
touch -a -t 202001020304 f
touch -m -t 201912312359 f
chmod 644 f
ln f otro
--- stdin
prompt $%n
override on
stat -long f
stat -acc -long f
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ 2019/12/31-23:59   2 \( *\d+\) *\S+ *\S+ -rw-r--r--        4 f
$
~ 2020/01/02-03:04   2 \( *\d+\) *\S+ *\S+ -rw-r--r--        4 f
$
=== set-user-id, set-group-id and sticky bits show in lower case
--- setup
printf 'hola' > f
chmod 4644 f
printf 'hola' > g
chmod 2600 g
mkdir d1 d2 d3
chmod 1777 d1
chmod 1776 d2
chmod 7000 d3
mkfifo tubo
chmod 640 tubo
--- stdin
prompt $%n
override on
stat -long f g d1 d2 d3 tubo
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ .* -rwsr--r--        4 f
~ .* -rw---s---        4 g
~ .* drwxrwxrwt +\d+ d1
~ .* drwxrwxrwt +\d+ d2
~ .* d--s--s--t +\d+ d3
~ .* prw-r----- +0 tubo
$
=== symbolic links are described themselves; -link adds the target
--- setup
printf 'hola' > f
ln -s f enlace
ln -s no/esta roto
--- stdin
prompt $%n
override on
stat enlace roto
stat -link enlace roto
stat -long enlace
stat -long -link enlace roto
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
       1  enlace
       7  roto
$
       1  enlace -> f
       7  roto -> no/esta
$
~ .* lrwxrwxrwx        1 enlace
$
~ .* lrwxrwxrwx        1 enlace -> f
~ .* lrwxrwxrwx        7 roto -> no/esta
$
=== the group column names the group whose id is the owner's user id
--- requires
root
--- setup
printf 'hola' > f
chown 4242:0 f
chmod 600 f
--- stdin
prompt $%n
override on
stat -long f
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ \d{4}/\d\d/\d\d-\d\d:\d\d   1 \( *\d+\)   \?\?\?\?\?\?   \?\?\?\?\?\? -rw-------        4 f
$
