# Faults provoked on purpose and the protection that works once.
=== an unprotected null store ends the shell by SIGSEGV
--- requires
unsanitized
--- stdin
override on
segmentation
limitresend
--- stdout
~~~
--- status
signal SEGV
=== an unprotected division by zero ends the shell by SIGFPE
--- requires
unsanitized
--- stdin
override on
fpe
limitresend
--- stdout
~~~
--- status
signal FPE
=== protection restores the shell once; the second fault ends it
--- requires
unsanitized
--- stdin
override on
protectsegv
segmentation
sigprocmask
limitresend
segv
limitresend
--- stdout
~~~
~ .*Protegiendo de SEGV, el programa volvera al princiio de main
El manejador se instala con SA_RESTART, solo se ejecuta una vez
~ .*Manejada senal SEGV \(11\) en 0x[0-9a-f]+
Shell restaurado a su estado al pricipio de main
~ .*  SENALES ENMASCARADAS: SEGV $
~ .*limitresend: off
~ .* (no-eol)
--- status
signal SEGV
=== the FPE protection names its signal
--- requires
unsanitized
--- stdin
override on
protectfpe
siginfo FPE
divby0
limitresend
divby0
--- stdout
~~~
~ .*Protegiendo de FPE, el programa volvera al princiio de main
El manejador se instala con SA_RESTART, solo se ejecuta una vez
~ .*        FPE: No Enmascarada 0x[0-9a-f]+   -sleep:0 RESTART ONSTACK $
~ .*Manejada senal FPE \(8\) en 0x[0-9a-f]+
Shell restaurado a su estado al pricipio de main
~ .*limitresend: off
~ .* (no-eol)
--- status
signal FPE
