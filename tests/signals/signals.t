# What the signal commands print. An output line that follows a prompt is
# matched from its end, so the cases do not depend on the prompt.
=== names are exact and unprefixed; IOT shows as ABRT; counters by name as typed
--- stdin
override on
siginfo IOT SIGINT int 6
sigcount INT TERM FOO
sigcount -zero FOO
sigaction -dfl -ign -hand QUIT
sigprocmask -unblock NOPE HUP
--- stdout
~~~
~ .*       ABRT: No Enmascarada SIG_DFL
  senal desconocida:SIGINT
  senal desconocida:int
  senal desconocida:6
~ .*  INT=0
  TERM=0
  senal desconocida:FOO
~ .*  senal desconocida:-dfl
  senal desconocida:-ign
  senal desconocida:-hand
       QUIT: No Enmascarada SIG_DFL
~ .*Senal desconocida NOPE
~ .* (no-eol)
=== handler settings; the flag words pile up from call to call
--- stdin
override on
sighandler -show -resend -sleep3 -Frestart -maskTERM -maskXX -maskINT USR1
siginfo USR1
sighandler -Fnodefer -Fonstack -sleep USR2
siginfo USR2
sighandler -maskXX -sleepabc HUP
siginfo HUP
sighandler -show -Frestart
sighandler -resethand SIGUSR1 usr1 10
--- stdout
~~~
~ .*       USR1: No Enmascarada 0x[0-9a-f]+ -show -resend -sleep:3 RESTART $
	mascara asociada INT TERM 
~ .*       USR2: No Enmascarada 0x[0-9a-f]+   -sleep:0 RESTART $
	mascara asociada INT TERM ONSTACK NODEFER 
~ .*        HUP: No Enmascarada 0x[0-9a-f]+   -sleep:0 RESTART $
	mascara asociada INT TERM ONSTACK NODEFER 
~ .*No existe senal -resethand
No existe senal SIGUSR1
No existe senal usr1
No existe senal 10
~ .* (no-eol)
=== re-send limit, signal-use flag and the alternate stack's errors
--- stdin
override on
limitresend
limitresend 3
limitresend
limitresend abc
limitresend
usesignals
usesignals on
usesignals
usesignals ON
sigaltstack 0
sigaltstack abc
sigaltstack 65536 zzz
sigaltstack 65536 0x1000
sigaltstack
exit
--- stdout
~~~
~ .*limitresend: off
~ .*limitresend: 3
~ .*limitresend: off
~ .*El shell esta no preparado para el uso de senales
	Esto condiciona si el shell termina cuando la lectura de techado da error
~ .*El shell esta preparado para el uso de senales
	Esto condiciona si el shell termina cuando la lectura de techado da error
~ .*parametro no valido: ON
~ .*pila 65536 bytes en 0x1000
~ .* (no-eol)
--- stderr
Imposible establecer pila: Cannot allocate memory
Imposible establecer pila: Cannot allocate memory
Imposible establecer pila: Bad address
=== an unprotected null store ends the shell
--- requires
unsanitized
--- stdin
override on
segmentation
--- stdout
~~~
--- status
signal SEGV
=== an unprotected division by zero ends the shell
--- requires
unsanitized
--- stdin
override on
fpe
--- stdout
~~~
--- status
signal FPE
=== the FPE protection works once
--- requires
unsanitized
--- stdin
override on
protectfpe
divby0
limitresend
divby0
--- stdout
~~~
~ .*Protegiendo de FPE, el programa volvera al princiio de main
El manejador se instala con SA_RESTART, solo se ejecuta una vez
~ .*Manejada senal FPE \(8\) en 0x[0-9a-f]+
Shell restaurado a su estado al pricipio de main
~ .*limitresend: off
~ .* (no-eol)
--- status
signal FPE
