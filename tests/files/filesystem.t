# stat, listings, create, delete, links. Directories hold one entry where the
# order matters (the system's is unsorted). The special bits show in lower
# case with or without execute under them. create's failures end no line.
=== stat lines, listing parameters, recursion before and after, paths past the buffers, create, delete, links
--- setup
printf 'hola' > f && touch -a -t 202001020304 f && touch -m -t 201912312359 f && chmod 4644 f && ln f otro
mkdir d && chmod 7000 d && ln -s f enlace && ln -s no/esta roto
mkdir -p a/b h lleno/uno vacio dest/dentro && printf 'hola' > a/b/f && ln -s a al && printf 1 > lleno/uno/f && ln -s dest ldest
mkdir largo && cd largo
for n in 1 2 3 4 5; do d=$(printf "%0250d" $n); mkdir $d; cd $d; done
touch hoja
--- stdin
prompt $
override on
stat -acc f
stat f -long
stat -long f d
stat -long -link enlace roto
getdirparams
setdirparams hid long recb
getdirparams
setdirparams lnk nolink reca short nohid link
getdirparams
listrec a
listrev a
listrec -hid h
setdirparams recb
dir -d a al
listrec largo
deltree largo
create -f x
create -f x
create e
makefile y extra
delete lleno noexiste vacio x
deltree noexiste lleno ldest
hardlink otro duro
symlink noexiste colgante
link -s f blando
hardlink otro duro
symlink f colgante
link -s a
--- stdout
@startup
@prompt $la ejecucion de comandos que no son de las practicas esta habilitada
$       4  2020/01/02-03:04 f
$       4  f
 ****error al acceder a -long:{{ENOENT}}
~ \$2019/12/31-23:59   2 \( *\d+\) +\S+ +\S+ -rwsr--r--        4 f
~ \d{4}/\d\d/\d\d-\d\d:\d\d   2 \( *\d+\) +\S+ +\S+ d--s--s--t +\d+ d
~ \$.*   1 \( *\d+\) +\S+ +\S+ lrwxrwxrwx        1 enlace -> f
~ .*   1 \( *\d+\) +\S+ +\S+ lrwxrwxrwx        7 roto -> no/esta
$Listado: corto sin links no recursivo 
$$Listado: largo sin links recursvo (antes) con ficheros ocultos
$$Listado: corto con links recursvo (despues) 
$************a
~  +\d+  b
************a/b
       4  f
$************a/b
       4  f
************a
~  +\d+  b
$************h
~  +\d+  \.\.?
~  +\d+  \.\.?
$$************a/b
       4  f
************a
~  +\d+  b
       1  al -> a
$************largo
~  +\d+  0{249}1
~~~
~ \*{12}largo/0{249}1/0{249}2/0{249}3/0{249}4
~  \*\*\*\*error al acceder a 0{249}5:{{ENAMETOOLONG}}
$Imposible borrar largo: {{ENAMETOOLONG}}
$$Imposible crear x: {{EEXIST}}$$$Imposible borrar lleno: {{ENOTEMPTY}}
Imposible borrar noexiste: {{ENOENT}}
$Imposible borrar noexiste: {{ENOENT}}
$$$$Imposible crear enlace real a otro: {{EEXIST}}
$Imposible crear enlace simbolico a f: {{EEXIST}}
$uso: symlink f1 f2
$ (no-eol)
--- post
stat -c '%a %F' e y | grep -c "^$(printf '%o' $((0777 & ~$(umask)))) \(directory\|regular empty file\)$"
echo $(ls) $(stat -c %h f) $(readlink blando colgante)
--- post-stdout
2
a al blando colgante d dest duro e enlace f h largo otro roto y 3 f noexiste
=== as nobody, deltree stops at the first entry it cannot remove; the group column is looked up by the owner's uid
--- requires
root
--- setup
chmod 777 .
mkdir top && for n in 1 2 3 4 5 6; do printf x > top/f$n; done
mkdir top/cerrado && touch top/cerrado/dentro && chmod 777 top && chmod 555 top/cerrado
ls -f top | grep -v '^\.\.\?$' > orden
printf 'hola' > g && chown 4242:0 g && chmod 600 g
--- stdin
prompt $
override on
stat -long g
setuid 65534
deltree top
--- stdout
@startup
@prompt $la ejecucion de comandos que no son de las practicas esta habilitada
~ \$\d{4}/\d\d/\d\d-\d\d:\d\d   1 \( *\d+\)   \?\?\?\?\?\?   \?\?\?\?\?\? -rw-------        4 g
$$Imposible borrar top: {{EACCES}}
$ (no-eol)
--- post
# Entries before cerrado are gone, those after it are left.
a=1; for e in $(cat orden); do [ $e = cerrado ] && a=0; [ -e top/$e ] && echo $a; done | uniq
ls top/cerrado
--- post-stdout
0
dentro
