# The open-file table and I/O on raw descriptor numbers, read like atoi ("abc"
# is 0). writestr's buffer holds 1023 bytes: a longer text is refused.
=== mode words, names of copies, listopen's 20 lines and the run after them, I/O messages
--- setup
printf 'ab\tc\001d\nend' > datos
--- stdin
prompt $
override on
open copia cr wo tr
open datos rw ap ex xx tr
open datos ro
dup 4
dup2 6 8
dup abc
listopen 10
listopen abc
dup2 4 20
dup2 4 21
dup2 4 23
listopen
close -99999999999
dup 4096
writestr 1 hola     mundo
writestr 2 al	error
writestr 3 uno  dos
writestr 3 tres
writestr 3 00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000 000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000
writestr 3 00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000 0000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000
writestr 4096 nada
writestr 3
read 5 0 4
write 3 0 0
readstr 5 4
readstr 5 100
readstr 5 -5
readstr 4096 3
lseek 5 0 SEEK_END
lseek 5 -2 SEEK_CUR
lseek 5 3 seek_end
lseek 5 -20 SEEK_END
lseek 5 99999999999999999999
lseek 1 0 SEEK_CUR
dup2 50 3
open
--- stdout
@startup
@prompt $la ejecucion de comandos que no son de las practicas esta habilitada
$Anadida entrada 3 a la tabla ficheros abiertos
$Anadida entrada 4 a la tabla ficheros abiertos
$Anadida entrada 5 a la tabla ficheros abiertos
~ \$\$\$\$descriptor: 0, offset: \(\d+\)-> entrada estandar 
descriptor: 1, offset: (  )-> salida estandar O_WRONLY 
descriptor: 2, offset: (  )-> error estandar O_WRONLY 
descriptor: 3, offset: (0)-> copia O_CREAT O_WRONLY O_TRUNC 
descriptor: 4, offset: (0)-> datos O_EXCL O_RDWR O_APPEND 
descriptor: 5, offset: (0)-> datos 
descriptor: 6, offset: (0)-> dupplicado de 4 (datos) O_RDWR O_APPEND 
~ descriptor: 7, offset: \(\d+\)-> dupplicado de 0 \(entrada estandar\) 
descriptor: 8, offset: (0)-> dupplicado de 6 (dupplicado de 4 (datos)) O_RDWR O_APPEND 
descriptor: 9, offset: (  )-> no usado 
~ \$\$\$\$\$descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 19, offset: (  )-> no usado 
descriptor: 20, offset: (0)-> dupplicado de 4 (datos) O_RDWR O_APPEND 
descriptor: 21, offset: (0)-> dupplicado de 4 (datos) O_RDWR O_APPEND 
~ \$descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
descriptor: 21, offset: (0)-> dupplicado de 4 (datos) O_RDWR O_APPEND 
$$hola mundo$$$$$Parametros incorrectos
$Error intentar escribir 4 bytes en el descriptor 4096: {{EBADF}}
$Parametros incorrectos
$Error al leer del descriptor 5 a la direccion {{null}}: {{EFAULT}}
$Escritos 0 bytes en el descriptor 3 dsde la direccion {{null}}
$Leidos 4 bytes del descriptor 5
ab	c
$Leidos 6 bytes del descriptor 5
d
end
$Imposible asignar memoria para la lectura
$Error al intentar leer del descriptor 4096: {{EBADF}}
$Descriptor 5 posicionado en 10
$Descriptor 5 posicionado en 8
$Descriptor 5 posicionado en 3
$Error al intentar posicionar el descriptor 5 en el offset  -20: {{EINVAL}}
~ \$(Descriptor 5 posicionado en|Error al intentar posicionar el descriptor 5 en el offset ) 9223372036854775807(: {{EINVAL}})?
$Error al intentar posicionar el descriptor 1 en el offset  0: {{ESPIPE}}
~ \$\$descriptor: 0, offset: \(\d+\)-> entrada estandar 
~~~
$ (no-eol)
--- stderr
Inposible duplicar descriptor: {{EBADF}}
al errorInposible duplicar descriptor: {{EBADF}}
--- post
echo $(head -c 11 copia) $(wc -c < copia)
--- post-stdout
uno dostres 1034
