=== names exact and unprefixed, IOT as ABRT, unknowns worded per command; handler flags pile up; settings texts
--- stdin
override on
siginfo IOT SIGINT 6
sigaction -dfl QUIT
sigprocmask -unblock NOPE HUP
sighandler -resethand USR1
sighandler -show -resend -sleep3 -Frestart -maskTERM -maskXX -maskINT USR1
siginfo USR1
sighandler -Fnodefer -Fonstack -sleepabc USR2
siginfo USR2
sigaction -ignore INT
sigaction -ignore
/bin/echo uno
back /bin/mkdir d
/bin/sleep 0.3
limitresend 3
limitresend abc
limitresend
usesignals on
usesignals
exit
--- stdout
~~~
~ .*       ABRT: No Enmascarada SIG_DFL
  senal desconocida:SIGINT
  senal desconocida:6
~ .*  senal desconocida:-dfl
       QUIT: No Enmascarada SIG_DFL
~ .*Senal desconocida NOPE
~ .*No existe senal -resethand
~ .*       USR1: No Enmascarada 0x[0-9a-f]+ -show -resend -sleep:3 RESTART $
	mascara asociada INT TERM 
~ .*       USR2: No Enmascarada 0x[0-9a-f]+   -sleep:0 RESTART $
	mascara asociada INT TERM ONSTACK NODEFER 
~ .*  SENALES SIGNORADAS: INT $
~ .*uno
~ .*limitresend: off
~ .*El shell esta preparado para el uso de senales
	Esto condiciona si el shell termina cuando la lectura de techado da error
~ .* (no-eol)
