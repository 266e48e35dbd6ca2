# labsh-diff against shells made to differ from labsh in known places.
=== a changed message, one address printed twice, a missing newline: exactly those lines differ
--- program
labsh-diff
--- args
s.txt
--
./alumno
--- requires
own-shell
--- setup
printf 'override on\nnumserie\nallocate -malloc 10\nallocate -malloc 20\nopen nofile\nhistoric -2\n' > s.txt
cat > alumno <<'EOF'
#!/bin/sh
"$LABSH" "$@" 2>&1 | sed -e '/numserie del shell/{N;s/\n//;}' -e '/Asignados 10 bytes/h' \
    -e '/Asignados 20 bytes/{G;s/ en 0x[0-9a-f]*\n.* en \(0x[0-9a-f]*\)$/ en \1/;}' \
    -e 's/Imposible abrir fichero/No pude abrir fichero/'
EOF
chmod +x alumno
--- stdout
== s.txt: labsh frente a ./alumno
= arranque (no cuenta)
=    1 override on
X    2 numserie
        --- labsh
        +++ ./alumno
        @@ -1 +1 @@
~         -numserie del shell 6\.I\.02 Fecha ejecutable: .*
~         \+numserie del shell 6\.I\.02 Fecha ejecutable: .*
        \ No newline at end of file
=    3 allocate -malloc 10
X    4 allocate -malloc 20
        --- labsh
        +++ ./alumno
        @@ -1 +1 @@
        -Asignados 20 bytes en <A2>
        +Asignados 20 bytes en <A1>
X    5 open nofile
        --- labsh
        +++ ./alumno
        @@ -1 +1 @@
        -Imposible abrir fichero: {{ENOENT}}
        +No pude abrir fichero: {{ENOENT}}
=    6 historic -2
3 de 6 lineas iguales
--- status
1
=== the table of several shells run at once: a message, a crash, a hang, a flood, a child left, the terminal, none
--- program
labsh-diff
--- args
--timeout
2
-j
4
--practica
0
--script
s.txt
--csv
t.csv
--html
t.html
./msg
./crash
./hang
./flood
./child
./tty
./nada
--- requires
own-shell
--- setup
printf 'numserie\nhistoric\nlimits\ncommand 0\nhistoric -1\n' > s.txt
shell() { printf '#!/bin/sh\n%s\n' "$2" > "$1"; chmod +x "$1"; }
shell msg '"$LABSH" "$@" | sed s/Limites/Limite/'
shell crash 'head -n 3 | "$LABSH" "$@"; kill -SEGV $$'
shell hang 'head -n 2 | "$LABSH" "$@"; sleep 100 & echo $! >> '"$PWD/pids"'; wait'
shell flood '"$LABSH" "$@"; yes'
shell child '"$LABSH" "$@"; sleep 100 & echo $! >> '"$PWD/pids"
shell tty 'head -n 1 | "$LABSH" "$@"; read x < /dev/tty'
--- stdout
Practica 0: = igual, X distinto, - no ejecutado, en blanco sin lineas
shell   prompt numserie limits systemd command historic  iguales
./msg             =       X               =       =      3/4
./crash           =       =               X       -      2/4  senal SEGV
./hang            =       X               -       -      1/4  sin terminar en el tiempo limite
./flood           =       =               =       =      4/4  inunda la salida
./child           =       =               =       =      4/4  dejo procesos en marcha
./tty             =       -               -       X      1/4  usa el terminal
./nada            -       -               -       -      0/4  no se puede ejecutar: {{ENOENT}}
--- status
1
--- post
cat t.csv
wc -l < pids
for p in $(cat pids); do ps -o stat= -p $p | grep -q '^[^Z]' && echo "$p sigue"; done
--- post-stdout
shell,prompt,numserie,limits,systemd,command,historic,iguales,comandos,estado
./msg,,igual,distinto,,igual,igual,3,4,
./crash,,igual,igual,,distinto,no ejecutado,2,4,senal SEGV
./hang,,igual,distinto,,no ejecutado,no ejecutado,1,4,sin terminar en el tiempo limite
./flood,,igual,igual,,igual,igual,4,4,inunda la salida
./child,,igual,igual,,igual,igual,4,4,dejo procesos en marcha
./tty,,igual,no ejecutado,,no ejecutado,distinto,1,4,usa el terminal
./nada,,no ejecutado,no ejecutado,,no ejecutado,no ejecutado,0,4,no se puede ejecutar: {{ENOENT}}
~ \s*4
=== the HTML page is well formed, with a cell per command and the differences side by side
--- program
labsh-diff
--- args
--practica
0
--script
s.txt
--html
t.html
./msg
--- requires
own-shell
program python3
--- setup
printf 'numserie\nlimits\n' > s.txt
printf '#!/bin/sh\n"$LABSH" "$@" | sed s/Limites/Limite/\n' > msg; chmod +x msg
--- stdout
~~~
--- status
1
--- post
python3 -c '
import sys, xml.etree.ElementTree as ET
t = ET.parse("t.html").getroot()
cells = [td.text for td in t.iter("td") if td.get("class") in ("igual", "distinto", "noej")]
pres = ["".join(p.itertext()) for p in t.iter("pre")]
print(cells, len(pres), "*Limites*****" in pres[0], "*Limite*****" in pres[1])'
--- post-stdout
['=', 'X'] 2 True True
=== record a case from labsh's run; it checks labsh; labsh with itself is all equal; bad usage is status 2
--- program
/bin/sh
--- args
-c
d=$LABSH_DIFF; $d --record s.txt > s.t && $d --check s.t | tail -1 | cut -d' ' -f1-6; $d s.txt s.t -- "$LABSH" | sed -n '/^==/p;/iguales/p'; $d --bad; echo $?
--- setup
printf 'override on\nallocate -malloc 10\nstat -long /\nopen nofile\npid\ndate\n' > s.txt
--- stdout
1 casos, 0 fallan, 0 omitidos
~ == s\.txt: labsh frente a .*
6 de 6 lineas iguales
~ == s\.t: s\.txt: labsh frente a .*
6 de 6 lineas iguales
2
--- stderr
labsh-diff: opcion desconocida: --bad
labsh-diff -h muestra el uso
