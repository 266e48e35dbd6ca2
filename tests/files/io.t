# Descriptor I/O: read, write, lseek, readstr, writestr on raw numbers.
=== writestr joins its words with one blank and adds no line end
--- stdin
prompt $%n
override on
writestr 1 hola     mundo
writestr 2 al	error
open f cr wo
writestr 3 uno dos
writestr 3 tres
writestr 99 nada
writestr -1 nada
writestr 1
writestr
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
hola mundo$
$
Anadida entrada 3 a la tabla ficheros abiertos
$
$
$
Error intentar escribir 4 bytes en el descriptor 99: Bad file descriptor
$
Error intentar escribir 4 bytes en el descriptor -1: Bad file descriptor
$
Parametros incorrectos
$
Parametros incorrectos
$
--- stderr
al error (no-eol)
--- post
od -c f | sed -n 1p
--- post-stdout
0000000   u   n   o       d   o   s   t   r   e   s
=== writestr refuses a text longer than its 1023-byte buffer, and writes one that fits
--- setup
a=$(printf '%0500d' 0); b=$(printf '%0522d' 0); c=$(printf '%0523d' 0)
{ echo 'prompt $%n'; echo 'override on'; echo 'open f cr wo'; echo "writestr 3 $a $b"; echo "writestr 3 $a $c"; echo "writestr 3 $a$c$c$c$c$c"; } > entrada
--- stdin-file
entrada
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Anadida entrada 3 a la tabla ficheros abiertos
$
$
Parametros incorrectos
$
Parametros incorrectos
$
--- post
wc -c < f
--- post-stdout
1023
=== lseek: references, unknown words, negative positions, bad numbers
--- setup
printf 'abcdefghij' > datos
--- stdin
prompt $%n
override on
open datos
lseek 3 0 SEEK_END
lseek 3 4 SEEK_SET
lseek 3 -2 SEEK_CUR
lseek 3 3 seek_end
lseek 3 7
lseek 3 -20 SEEK_END
lseek 3 -1
lseek 3 abc SEEK_END
lseek 3 9223372036854775807
lseek 3 99999999999999999999
lseek 1 0 SEEK_CUR
lseek 77 0
lseek abc 0 SEEK_CUR
lseek 3
lseek
listopen 4
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Anadida entrada 3 a la tabla ficheros abiertos
$
Descriptor 3 posicionado en 10
$
Descriptor 3 posicionado en 4
$
Descriptor 3 posicionado en 2
$
Descriptor 3 posicionado en 3
$
Descriptor 3 posicionado en 7
$
Error al intentar posicionar el descriptor 3 en el offset  -20: Invalid argument
$
Error al intentar posicionar el descriptor 3 en el offset  -1: Invalid argument
$
Descriptor 3 posicionado en 10
$
~ (Descriptor 3 posicionado en 9223372036854775807|Error al intentar posicionar el descriptor 3 en el offset  9223372036854775807: Invalid argument)
$
~ (Descriptor 3 posicionado en 9223372036854775807|Error al intentar posicionar el descriptor 3 en el offset  9223372036854775807: Invalid argument)
$
Error al intentar posicionar el descriptor 1 en el offset  0: Illegal seek
$
Error al intentar posicionar el descriptor 77 en el offset  0: Bad file descriptor
$
~ Descriptor 0 posicionado en \d+
$
Parametros incorrectos
$
Parametros incorrectos
$
~ descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
~ descriptor: 3, offset: \((10|9223372036854775807)\)-> datos 
$
=== readstr shows the bytes raw; counts that are zero, negative or not numbers
--- setup
printf 'ab\tc\001d\nend' > datos
--- stdin
prompt $%n
override on
open datos
readstr 3 4
readstr 3 0
readstr 3 100
readstr 3 100
lseek 3 0
readstr 3 abc
readstr 3 -5
readstr 3 -99999999999999999999
readstr 99 3
readstr 1 3
readstr 3
readstr
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Anadida entrada 3 a la tabla ficheros abiertos
$
Leidos 4 bytes del descriptor 3
ab	c
$
Leidos 0 bytes del descriptor 3

$
Leidos 6 bytes del descriptor 3
d
end
$
Leidos 0 bytes del descriptor 3

$
Descriptor 3 posicionado en 0
$
Leidos 0 bytes del descriptor 3

$
Imposible asignar memoria para la lectura
$
Imposible asignar memoria para la lectura
$
Error al intentar leer del descriptor 99: Bad file descriptor
$
Error al intentar leer del descriptor 1: Bad file descriptor
$
Parametros incorrectos
$
Parametros incorrectos
$
=== read and write move bytes between a descriptor and a typed address
--- setup
printf 'abcdef' > datos
--- stdin
prompt $%n
override on
open datos
open copia cr wo
read 3 0 4
read 3 nada 4
write 4 0 4
write 4 0 0
read 3 0 0
read 99 0 1
write 99 0 1
read 3 0
read 3
write 4 0
write
--- stdout
@startup
@prompt $
la ejecucion de comandos que no son de las practicas esta habilitada
$
Anadida entrada 3 a la tabla ficheros abiertos
$
Anadida entrada 4 a la tabla ficheros abiertos
$
Error al leer del descriptor 3 a la direccion (nil): Bad address
$
Error al leer del descriptor 3 a la direccion (nil): Bad address
$
Error al escribir en el descriptor 4 desde la direccion (nil): Bad address
$
Escritos 0 bytes en el descriptor 4 dsde la direccion (nil)
$
Leidos 0 bytes del descriptor 3 en la direccion (nil)
$
Error al leer del descriptor 99 a la direccion (nil): Bad file descriptor
$
Error al escribir en el descriptor 99 desde la direccion (nil): Bad file descriptor
$
Parametros incorrectos
$
Parametros incorrectos
$
Parametros incorrectos
$
Parametros incorrectos
$
