# Creating, deleting and linking.
=== create, makefile and makedir; failures have no line end
--- stdin
prompt $%n
override on
create -f x
create -f x
create d
create d
makefile y extra
makedir e extra
makedir e
create -f
create
makefile
makedir
create -f sin/padre
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
Imposible crear x: File exists$
$
Imposible crear d: File exists$
$
$
Imposible crear e: File exists$
~ /.*
$
~ /.*
$
~ /.*
$
~ /.*
$
Imposible crear sin/padre: No such file or directory$
--- post
m=$(printf '%o' $((0777 & ~$(umask))))
for f in x d y e; do [ "$(stat -c %a $f)" = "$m" ] && echo "$f $(stat -c %F $f)"; done
wc -c < x; [ -e extra ] || echo "sin extra"
--- post-stdout
x regular empty file
d directory
y regular empty file
e directory
0
sin extra
=== delete and deltree: files, empty and full directories, links, missing names
--- setup
mkdir -p lleno/uno/dos && printf 1 > lleno/uno/dos/f && printf 2 > lleno/.oculto && mkdir vacio && printf 3 > fich
mkdir -p dest/dentro && ln -s dest enlace && ln -s /nonexistent roto
--- stdin
prompt $%n
override on
delete lleno noexiste vacio fich
deltree noexiste lleno enlace roto
delete
deltree
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Imposible borrar lleno: Directory not empty
Imposible borrar noexiste: No such file or directory
$
Imposible borrar noexiste: No such file or directory
$
~ /.*
$
~ /.*
$
--- post
ls -A; ls -A dest
--- post-stdout
dest
dentro
=== deltree stops at the first entry it cannot remove and leaves the rest
--- setup
mkdir -p top/largo
cd top/largo
for n in 1 2 3 4 5; do d=$(printf "%0250d" $n); mkdir $d; cd $d; done
touch hoja
cd ../../../../../../..
for n in 1 2 3 4 5 6; do printf x > top/f$n; done
ls -f top | grep -v '^\.\.\?$' > orden
mkdir otro && touch otro/g
--- stdin
prompt $%n
override on
deltree top otro
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Imposible borrar top: File name too long
$
--- post
antes=1
for e in $(cat orden); do
  if [ "$e" = largo ]; then antes=0; [ -d top/largo ] && echo "largo sigue"; continue; fi
  if [ $antes = 1 ] && [ -e top/$e ]; then echo "$e no borrado"; fi
  if [ $antes = 0 ] && [ ! -e top/$e ]; then echo "$e borrado"; fi
done
[ -e otro ] || echo "otro borrado"
find top -name hoja | wc -l
--- post-stdout
largo sigue
otro borrado
1
=== links: hard, symbolic, usage lines with the word as typed
--- setup
printf 'datos' > a
--- stdin
prompt $%n
override on
hardlink a duro
symlink a blando
symlink noexiste colgante
link a duro2
link -s a blando2
hardlink a duro
symlink a blando
link noexiste x
hardlink a
enlacereal a
symlink
link a
lnk
link -s a
link -s
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
Imposible crear enlace real a a: File exists
$
Imposible crear enlace simbolico a a: File exists
$
Imposible crear enlace real a noexiste: No such file or directory
$
uso: hardlink f1 f2
$
uso: enlacereal f1 f2
$
uso: symlink f1 f2
$
uso: link f1 f2
$
uso: lnk f1 f2
$
uso: symlink f1 f2
$
uso: link f1 f2
$
--- post
stat -c '%h %F %N' a duro duro2 blando blando2 colgante
--- post-stdout
3 regular file 'a'
3 regular file 'duro'
3 regular file 'duro2'
1 symbolic link 'blando' -> 'a'
1 symbolic link 'blando2' -> 'a'
1 symbolic link 'colgante' -> 'noexiste'
