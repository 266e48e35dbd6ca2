# The handler's settings as siginfo shows them, the re-send limit, the
# signal-use flag and the alternate stack's error messages. Each output line
# that follows a prompt is matched from its end, so the cases do not depend
# on the prompt.
=== handler options, mask and flags; the flag words pile up from call to call
--- stdin
override on
sighandler -show -resend -sleep3 -Frestart -maskTERM -maskXX -maskINT USR1
siginfo USR1
sighandler -Fnodefer -Fonstack -sleep USR2
siginfo USR2
sighandler -maskXX -sleepabc -Fresethand HUP
siginfo HUP
sighandler
sighandler -show -Frestart
--- stdout
~~~
~ .*       USR1: No Enmascarada 0x[0-9a-f]+ -show -resend -sleep:3 RESTART $
	mascara asociada INT TERM 
~ .*       USR2: No Enmascarada 0x[0-9a-f]+   -sleep:0 RESTART $
	mascara asociada INT TERM ONSTACK NODEFER 
~ .*        HUP: No Enmascarada 0x[0-9a-f]+   -sleep:0 RESTART $
	mascara asociada INT TERM ONSTACK NODEFER RESETHAND 
~ .* (no-eol)
=== unknown names and the unrecognised reset option are signal names
--- stdin
override on
sighandler -resethand SIGUSR1 usr1 10 USR1 FOO
sighandler -show -sleep2 -maskINT
sigaction -hand USR2
sigaction -handler -show nada USR2
siginfo USR2
--- stdout
~~~
~ .*No existe senal -resethand
No existe senal SIGUSR1
No existe senal usr1
No existe senal 10
No existe senal FOO
~ .*  senal desconocida:-hand
       USR2: No Enmascarada SIG_DFL
~ .*No existe senal nada
~ .*       USR2: No Enmascarada 0x[0-9a-f]+ -show  -sleep:0 $
~ .* (no-eol)
=== the re-send limit: off, a number, or what atoi makes of a word
--- stdin
override on
limitresend
limitresend 3
limitresend
limitresend abc
limitresend
limitresend 12x
limitresend
limitresend off
limitresend
--- stdout
~~~
~ .*limitresend: off
~ .*limitresend: 3
~ .*limitresend: off
~ .*limitresend: 12
~ .*limitresend: off
~ .* (no-eol)
=== usesignals shows and sets the flag
--- stdin
override on
usesignals
usesignals on
usesignals
usesignals ON
usesignals off
usesignals
--- stdout
~~~
~ .*El shell esta no preparado para el uso de senales
	Esto condiciona si el shell termina cuando la lectura de techado da error
~ .*El shell esta preparado para el uso de senales
	Esto condiciona si el shell termina cuando la lectura de techado da error
~ .*parametro no valido: ON
~ .*El shell esta no preparado para el uso de senales
	Esto condiciona si el shell termina cuando la lectura de techado da error
~ .* (no-eol)
=== a prepared shell ends only by exit
--- stdin
override on
usesignals on
exit
--- stdout
~~~
--- status
0
=== alternate stack: sizes too small or not numbers fail with the system's text
--- stdin
override on
sigaltstack 0
sigaltstack abc
sigaltstack -4096
sigaltstack 100000
sigaltstack
sigaltstack 65536 0x1000
sigaltstack
--- stdout
~~~
~ .*pila 100000 bytes en 0x[0-9a-f]+
~ .*pila 65536 bytes en 0x1000
~ .* (no-eol)
--- stderr
Imposible establecer pila: Cannot allocate memory
Imposible establecer pila: Cannot allocate memory
Imposible establecer pila: Cannot allocate memory
