# Memory commands that need no address typed in: messages, defaults, the
# list's printed form and the umbrella commands' routing.
=== missing words print nothing, the parameter line or the usage line
--- stdin
prompt $%n
override on
memdump
memfill
memcopy 0x10
stringcopy 0x10
recurse
readfile f
i-o read f
writefile f 0x10
writefile -o f 0x10
e-s write -o f
i-o
e-s foo
allocate -bad
alloc -x
mem -zz
mem -zz -blocks
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
faltan parametros
$
faltan parametros
$
faltan parametros
$
faltan parametros
$
faltan parametros
$
uso: i-o [read|write] ......
$
uso: e-s [read|write] ......
$
uso: allocate [-malloc|-shared|-createshared|-mmap] ....
$
uso: alloc [-malloc|-shared|-createshared|-mmap] ....
$
Opcion -zz no contemplada
$
Opcion -zz no contemplada
$
=== malloc sizes: zero, not a number; the list oldest first
--- stdin
prompt $%n
override on
malloc 0
malloc -free 0
allocate -malloc abc
malloc 100
mmalloc 200
dealloc -malloc 300
malloc
memdemalloc 200
deallocate -malloc
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
No se asignan bloques de 0 bytes
$
No se asignan bloques de 0 bytes
$
No se asignan bloques de 0 bytes
$
~ Asignados 100 bytes en 0x[0-9a-f]+
$
~ Asignados 200 bytes en 0x[0-9a-f]+
$
No hay bloque de ese tamano asignado con malloc
$
~ \*{6}Lista de bloques asignados malloc para el proceso \d+
~  {4,}0x[0-9a-f]+ {14}100 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d malloc
~  {4,}0x[0-9a-f]+ {14}200 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d malloc
$
$
~ \*{6}Lista de bloques asignados malloc para el proceso \d+
~  {4,}0x[0-9a-f]+ {14}100 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d malloc
$
=== a size too big for malloc is refused, also when it overflows the conversion
--- env
ASAN_OPTIONS=allocator_may_return_null=1:detect_leaks=0:log_path=asan
--- stdin
prompt $%n
override on
memmalloc 99999999999999999999999
malloc 18446744073709551615
malloc
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Imposible obtener memoria con malloc: Cannot allocate memory
$
Imposible obtener memoria con malloc: Cannot allocate memory
$
~ \*{6}Lista de bloques asignados malloc para el proceso \d+
$
=== free and deallocate: no address or a null one lists, unknown ones are refused
--- stdin
prompt $%n
override on
free
free 0x0
liberar zz
deallocate
deallocate 0x1234
desasignar 0x7
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ \*{6}Lista de bloques asignados para el proceso \d+
$
~ \*{6}Lista de bloques asignados para el proceso \d+
$
~ \*{6}Lista de bloques asignados para el proceso \d+
$
~ \*{6}Lista de bloques asignados para el proceso \d+
$
Direccion 0x1234 no asignada con malloc, shared o mmap
$
Direccion 0x7 no asignada con malloc, shared o mmap
$
=== shared memory: no key, key 0, a key that is not a number, size 0
--- stdin
prompt $%n
override on
shared
memcreateshared 5
shared -create 0 100
allocate -createshared abc 100
createshared 12 0
shared 0
delkey
shared -delkey 0
deallocate -delkey abc
memdeshared
shared -free 5
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ \*{6}Lista de bloques asignados shared para el proceso \d+
$
~ \*{6}Lista de bloques asignados shared para el proceso \d+
$
Imposible asignar memoria compartida clave 0: Invalid argument
$
Imposible asignar memoria compartida clave 0: Invalid argument
$
No se asignan bloques de 0 bytes
$
Imposible asignar memoria compartida clave 0: Invalid argument
$
      delkey necesita clave_valida
$
      delkey necesita clave_valida
$
      delkey necesita clave_valida
$
~ \*{6}Lista de bloques asignados shared para el proceso \d+
$
No hay bloque de esa clave mapeado en el proceso
$
=== mapping files: protection words, empty and missing files, the mmap list
--- setup
printf 'hola\n' > f
: > vacio
--- stdin
prompt $%n
override on
mmap f r
mmap f rwxa
memmmap f
mmap vacio r
allocate -mmap nada r
mmap
mmap -free nada
dealloc -mmap f
memdemmap
--- merged
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ fichero f mapeado en 0x[0-9a-f]+
$
~ fichero f mapeado en 0x[0-9a-f]+
$
~ fichero f mapeado en 0x[0-9a-f]+
$
Imposible mapear fichero: Invalid argument
$
Imposible mapear fichero: No such file or directory
$
~ \*{6}Lista de bloques asignados mmap para el proceso \d+
~  {4,}0x[0-9a-f]+ {16}5 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d f  \(descriptor \d+\)
~  {4,}0x[0-9a-f]+ {16}5 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d f  \(descriptor \d+\)
~  {4,}0x[0-9a-f]+ {16}5 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d f  \(descriptor \d+\)
$
Fichero nada no mapeado
$
$
~ \*{6}Lista de bloques asignados mmap para el proceso \d+
~  {4,}0x[0-9a-f]+ {16}5 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d f  \(descriptor \d+\)
~  {4,}0x[0-9a-f]+ {16}5 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d f  \(descriptor \d+\)
$
=== readfile and writefile on missing files
--- setup
: > existe
--- stdin
prompt $%n
override on
readfile nada 0x10
writefile existe 0x10 0
i-o write existe 0x10 0
--- merged
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Imposible leer fichero: No such file or directory
$
Imposible escribir fichero: File exists
$
Imposible escribir fichero: File exists
$
=== mem shows variables, functions and the list in that order
--- stdin
prompt $%n
override on
malloc 16
mem
memory -vars
memoria -funcs
mem -blocks
mem -all -zz
recurse 2
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ Asignados 16 bytes en 0x[0-9a-f]+
$
~ Variables locales   ( {0,4}0x[0-9a-f]{12,14},){2} {0,4}0x[0-9a-f]{12,14}
~ Variables globales  ( {0,4}0x[0-9a-f]{12,14},){2} {0,4}0x[0-9a-f]{12,14}
~ Var \(N\.I\.\)globales  ( {0,4}0x[0-9a-f]{12,14},){2} {0,4}0x[0-9a-f]{12,14}
~ Variables staticas  ( {0,4}0x[0-9a-f]{12,14},){2} {0,4}0x[0-9a-f]{12,14}
~ Var \(N\.I\.\)staticas  ( {0,4}0x[0-9a-f]{12,14},){2} {0,4}0x[0-9a-f]{12,14}
~ Funciones programa  ( {0,4}0x[0-9a-f]{12,14},){2} {0,4}0x[0-9a-f]{12,14}
~ Funciones libreria  ( {0,4}0x[0-9a-f]{12,14},){2} {0,4}0x[0-9a-f]{12,14}
~ \*{6}Lista de bloques asignados para el proceso \d+
~  {4,}0x[0-9a-f]+ {15}16 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d malloc
$
~ Variables locales   .*
~ Variables globales  .*
~ Var \(N\.I\.\)globales  .*
~ Variables staticas  .*
~ Var \(N\.I\.\)staticas  .*
$
~ Funciones programa  .*
~ Funciones libreria  .*
$
~ \*{6}Lista de bloques asignados para el proceso \d+
~  {4,}0x[0-9a-f]+ {15}16 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d malloc
$
~ Variables locales   .*
~~~
~  {4,}0x[0-9a-f]+ {15}16 [A-Z][a-z]{2} [ 123]\d [0-2]\d:[0-5]\d malloc
$
~ parametro:  2\(0x[0-9a-f]+\) array 0x[0-9a-f]+, arr estatico 0x[0-9a-f]+
~ parametro:  1\(0x[0-9a-f]+\) array 0x[0-9a-f]+, arr estatico 0x[0-9a-f]+
~ parametro:  0\(0x[0-9a-f]+\) array 0x[0-9a-f]+, arr estatico 0x[0-9a-f]+
$
=== mem -pmap with none of the programs on the search path
--- env
PATH=/nonexistent
--- stdin
prompt $%n
override on
mem -pmap
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
$
--- stderr
cannot execute pmap (linux, solaris): No such file or directory
cannot execute procstat (FreeBSD): No such file or directory
cannot execute procmap (OpenBSD): No such file or directory
cannot execute vmmap (Mac-OS): No such file or directory
