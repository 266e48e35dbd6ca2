# The open-file table: open, close, dup, dup2, listopen, and bad numbers.
=== listopen shows the first 20 positions, then the run of used ones
--- stdin
prompt $%n
override on
listopen
listopen 3
listopen 0
listopen abc
listopen -1
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
descriptor: 3, offset: (  )-> no usado 
descriptor: 4, offset: (  )-> no usado 
descriptor: 5, offset: (  )-> no usado 
descriptor: 6, offset: (  )-> no usado 
descriptor: 7, offset: (  )-> no usado 
descriptor: 8, offset: (  )-> no usado 
descriptor: 9, offset: (  )-> no usado 
descriptor: 10, offset: (  )-> no usado 
descriptor: 11, offset: (  )-> no usado 
descriptor: 12, offset: (  )-> no usado 
descriptor: 13, offset: (  )-> no usado 
descriptor: 14, offset: (  )-> no usado 
descriptor: 15, offset: (  )-> no usado 
descriptor: 16, offset: (  )-> no usado 
descriptor: 17, offset: (  )-> no usado 
descriptor: 18, offset: (  )-> no usado 
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
$
$
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
~ descriptor: ([3-9]|1[0-9]), offset: \(  \)-> no usado 
~~~
descriptor: 19, offset: (  )-> no usado 
$
=== open: mode words, the word that ends them, and the listing line
--- setup
printf 'abcdef' > datos
--- stdin
prompt $%n
override on
open notas.txt cr wo tr
open f cr wo xx ap
open datos
open datos rw ap ex
open noexiste
open noexiste ro
open g cr ex wo
open g cr ex wo
listopen 8
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Anadida entrada 3 a la tabla ficheros abiertos
$
Anadida entrada 4 a la tabla ficheros abiertos
$
Anadida entrada 5 a la tabla ficheros abiertos
$
Anadida entrada 6 a la tabla ficheros abiertos
$
$
$
Anadida entrada 7 a la tabla ficheros abiertos
$
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
descriptor: 3, offset: (0)-> notas.txt O_CREAT O_WRONLY O_TRUNC 
descriptor: 4, offset: (0)-> f O_CREAT O_WRONLY 
descriptor: 5, offset: (0)-> datos 
descriptor: 6, offset: (0)-> datos O_EXCL O_RDWR O_APPEND 
descriptor: 7, offset: (0)-> g O_CREAT O_EXCL O_WRONLY 
$
--- stderr
Imposible abrir fichero: No such file or directory
Imposible abrir fichero: No such file or directory
Imposible abrir fichero: File exists
--- post
ls notas.txt f g
--- post-stdout
f
g
notas.txt
=== open with no words lists the table
--- stdin
prompt $%n
override on
open
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
~~~
descriptor: 19, offset: (  )-> no usado 
$
=== dup and dup2 name the copy after its source; bad numbers list the table
--- setup
printf 'abcdef' > datos
--- stdin
prompt $%n
override on
open datos
dup 3
dup 4
dup2 3 12
dup2 12 7
close 12
dup 12
dup2 12 8
dup 5000
dup2 3 99999999999
dup abc
listopen 13
dup
dup -1
dup2 3
dup2 3 -2
dup2 -1 3
close
close -7
close -99999999999
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Anadida entrada 3 a la tabla ficheros abiertos
$
$
$
$
$
$
$
$
$
$
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
descriptor: 3, offset: (0)-> datos 
descriptor: 4, offset: (0)-> dupplicado de 3 (datos) 
descriptor: 5, offset: (0)-> dupplicado de 4 (dupplicado de 3 (datos)) 
~ descriptor: 6, offset: \(\d+\)-> dupplicado de 0 \(entrada estandar\) 
descriptor: 7, offset: (0)-> dupplicado de 12 (dupplicado de 3 (datos)) 
descriptor: 8, offset: (  )-> no usado 
descriptor: 9, offset: (  )-> no usado 
descriptor: 10, offset: (  )-> no usado 
descriptor: 11, offset: (  )-> no usado 
descriptor: 12, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
$
--- stderr
Inposible duplicar descriptor: Bad file descriptor
Inposible duplicar descriptor: Bad file descriptor
Inposible duplicar descriptor: Bad file descriptor
Inposible duplicar descriptor: Bad file descriptor
