# Directory listings. Directories here hold one entry each where the order
# matters, since the system's entry order is not sorted; sizes of
# directories vary between file systems and are matched loosely.
=== listing parameters: defaults, setting, unknown words, dir
--- stdin
prompt $%n
override on
getdirparams
setdirparams hid long recb
getdirparams
setdirparams lnk nolink reca short nohid link
setdirparams
setdirparams norec
getdirparams
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Listado: corto sin links no recursivo 
$
$
Listado: largo sin links recursvo (antes) con ficheros ocultos
$
$
Listado: corto con links recursvo (despues) 
$
$
Listado: corto con links no recursivo 
$
=== list, listdir, listrec and listrev on a nested tree
--- setup
mkdir -p a/b/c && printf 'hola' > a/b/c/f && printf 'xy' > suelto
--- stdin
prompt $%n
override on
listdir a
listrec a
listrev a
list -reca a/b
list -recb -reca a/b
list -reca -recb a/b
list suelto noexiste a/b/c/f
listdir -reca a
list
listrec
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
************a
~  +\d+  b
$
************a
~  +\d+  b
************a/b
~  +\d+  c
************a/b/c
       4  f
$
************a/b/c
       4  f
************a/b
~  +\d+  c
************a
~  +\d+  b
$
************a/b
~  +\d+  c
************a/b/c
       4  f
$
************a/b
~  +\d+  c
************a/b/c
       4  f
$
************a/b/c
       4  f
************a/b
~  +\d+  c
$
       2  suelto
 ****error al acceder a noexiste:No such file or directory
       4  a/b/c/f
$
 ****error al acceder a -reca:No such file or directory
************a
~  +\d+  b
$
~ /.*
$
~ /.*
$
=== hidden entries: skipped, listed with -hid, never entered as . or ..
--- setup
mkdir -p h/.oculto && printf 'z' > h/.oculto/dentro
--- stdin
prompt $%n
override on
listrec h
listrec -hid h
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
************h
$
~ \*{12}h(/\.oculto)?
~  +\d+  (\.|\.\.|\.oculto|dentro)
~  +\d+  (\.|\.\.|\.oculto|dentro)
~  +\d+  (\.|\.\.|\.oculto|dentro)
~ \*{12}h(/\.oculto)?
~  +\d+  (\.|\.\.|\.oculto|dentro)
~  +\d+  (\.|\.\.|\.oculto|dentro)
~  +\d+  (\.|\.\.|\.oculto|dentro)
$
--- post
true
=== symbolic links: described, never entered; -link adds the target
--- setup
mkdir -p d/sub && ln -s ../otro d/sub/roto && ln -s d enlace && mkdir solo && ln -s /nonexistent/x solo/l
--- stdin
prompt $%n
override on
listdir enlace
listrec -link enlace
listdir -link solo
listrec -link d
listrev d
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
       1  enlace
$
       1  enlace -> d
$
************solo
      14  l -> /nonexistent/x
$
************d
~  +\d+  sub
************d/sub
       7  roto -> ../otro
$
************d/sub
       7  roto
************d
~  +\d+  sub
$
=== long listings: the special bits in lower case, -acc and links
--- setup
mkdir p && touch p/suid && chmod 4644 p/suid
mkdir q && mkdir q/tmp && chmod 1777 q/tmp
mkdir r && mkdir r/rarito && chmod 7776 r/rarito
mkdir s && touch -a -d '2001-02-03 04:05' s/viejo
--- stdin
prompt $%n
override on
listdir -long p
listdir -long q
list -long r
listdir -acc s
listdir -long -acc s
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
************p
~ \d{4}/\d\d/\d\d-\d\d:\d\d   1 \( *\d+\) +\S+ +\S+ -rwsr--r--        0 suid
$
************q
~ \d{4}/\d\d/\d\d-\d\d:\d\d   \d \( *\d+\) +\S+ +\S+ drwxrwxrwt +\d+ tmp
$
************r
~ \d{4}/\d\d/\d\d-\d\d:\d\d   \d \( *\d+\) +\S+ +\S+ drwsrwsrwt +\d+ rarito
$
************s
       0  2001/02/03-04:05 viejo
$
************s
~ 2001/02/03-04:05   1 \( *\d+\) +\S+ +\S+ -[-rw]{2}-[-rw]{2}-[-rw]{2}-        0 viejo
$
=== dir: one line per name, -d enters directories, the parameters apply
--- setup
mkdir -p t/u && printf '12345' > t/u/f && ln -s t/u enl
--- stdin
prompt $%n
override on
dir t
dir -d
dir -d t enl
setdirparams reca link
dir -d t enl
setdirparams recb
dir -d t
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~  +\d+  t
$
$
************t
~  +\d+  u
       3  enl
$
$
************t
~  +\d+  u
************t/u
       5  f
       3  enl -> t/u
$
$
************t/u
       5  f
************t
~  +\d+  u
$
=== paths longer than the 1024-byte buffers: the entry is reported, never entered
--- setup
mkdir largo && cd largo
for n in 1 2 3 4 5; do d=$(printf "%0250d" $n); mkdir $d; cd $d; done
touch hoja
--- stdin
prompt $%n
override on
listrec largo
listrev -long largo
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
************largo
~  +\d+  0{249}1
~ \*{12}largo/0{249}1
~  +\d+  0{249}2
~ \*{12}largo/0{249}1/0{249}2
~  +\d+  0{249}3
~ \*{12}largo/0{249}1/0{249}2/0{249}3
~  +\d+  0{249}4
~ \*{12}largo/0{249}1/0{249}2/0{249}3/0{249}4
~  \*\*\*\*error al acceder a 0{249}5:File name too long
$
~ \*{12}largo/0{249}1/0{249}2/0{249}3/0{249}4
~  \*\*\*\*error al acceder a 0{249}5:File name too long
~ \*{12}largo/0{249}1/0{249}2/0{249}3
~ \d{4}/\d\d/\d\d-\d\d:\d\d   \d \( *\d+\) +\S+ +\S+ d[-rwx]{9} +\d+ 0{249}4
~ \*{12}largo/0{249}1/0{249}2
~ \d{4}/\d\d/\d\d-\d\d:\d\d   \d \( *\d+\) +\S+ +\S+ d[-rwx]{9} +\d+ 0{249}3
~ \*{12}largo/0{249}1
~ \d{4}/\d\d/\d\d-\d\d:\d\d   \d \( *\d+\) +\S+ +\S+ d[-rwx]{9} +\d+ 0{249}2
************largo
~ \d{4}/\d\d/\d\d-\d\d:\d\d   \d \( *\d+\) +\S+ +\S+ d[-rwx]{9} +\d+ 0{249}1
$
