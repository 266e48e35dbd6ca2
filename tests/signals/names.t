# Signal names, counters, masks and dispositions as the commands print them.
# Each output line that follows a prompt is matched from its end, so the
# cases do not depend on the prompt. The sanitizers catch SEGV, BUS and FPE
# themselves, so the listing of a fresh shell is checked only without them.

=== names are exact, without prefix; IOT is shown as ABRT
--- stdin
override on
siginfo IOT SIGINT int 6 ABRT
siginfo KILL
--- stdout
~~~
~ .*       ABRT: No Enmascarada SIG_DFL
  senal desconocida:SIGINT
  senal desconocida:int
  senal desconocida:6
       ABRT: No Enmascarada SIG_DFL
~ .*       KILL: No Enmascarada SIG_DFL
~ .* (no-eol)
=== a fresh shell lists every signal at its default action, unmasked
--- requires
unsanitized
--- stdin
override on
siginfo
--- stdout
~~~
~ .*      HUP: No Enmascarada SIG_DFL
      INT: No Enmascarada SIG_DFL
     QUIT: No Enmascarada SIG_DFL
      ILL: No Enmascarada SIG_DFL
     TRAP: No Enmascarada SIG_DFL
     ABRT: No Enmascarada SIG_DFL
      BUS: No Enmascarada SIG_DFL
      FPE: No Enmascarada SIG_DFL
     KILL: No Enmascarada SIG_DFL
     USR1: No Enmascarada SIG_DFL
     SEGV: No Enmascarada SIG_DFL
     USR2: No Enmascarada SIG_DFL
     PIPE: No Enmascarada SIG_DFL
     ALRM: No Enmascarada SIG_DFL
     TERM: No Enmascarada SIG_DFL
SIGUNKNOWN: No Enmascarada SIG_DFL
     CHLD: No Enmascarada SIG_DFL
     CONT: No Enmascarada SIG_DFL
     STOP: No Enmascarada SIG_DFL
     TSTP: No Enmascarada SIG_DFL
     TTIN: No Enmascarada SIG_DFL
     TTOU: No Enmascarada SIG_DFL
      URG: No Enmascarada SIG_DFL
     XCPU: No Enmascarada SIG_DFL
     XFSZ: No Enmascarada SIG_DFL
   VTALRM: No Enmascarada SIG_DFL
     PROF: No Enmascarada SIG_DFL
    WINCH: No Enmascarada SIG_DFL
       IO: No Enmascarada SIG_DFL
SIGUNKNOWN: No Enmascarada SIG_DFL
      SYS: No Enmascarada SIG_DFL
~ .* (no-eol)
=== counters: shown by name as typed, cleared silently
--- stdin
override on
sigcount INT TERM FOO int
sigcount -zero FOO
sigcount -zero INT
sigcount -zero
sigcount -zero INT
--- stdout
~~~
~ .*  INT=0
  TERM=0
  senal desconocida:FOO
  senal desconocida:int
~ .* (no-eol)
=== masks: unknown names skipped silently by sigmask, reported by sigprocmask
--- stdin
override on
sigmask SEGV HUP sigint 2
sigmask
sigunmask SEGV
sigprocmask
sigprocmask -unblock NOPE HUP
sigunmask
sigprocmask -setmask TERM
sigmask USR1
sigprocmask -block
sigmask
--- stdout
~~~
~ .*  SENALES ENMASCARADAS: HUP SEGV $
~ .*  SENALES ENMASCARADAS: HUP $
~ .*Senal desconocida NOPE
~ .*  SENALES ENMASCARADAS: $
~ .*  SENALES ENMASCARADAS: $
~ .* (no-eol)
=== dispositions through sigignore, sigdefault and the sigaction umbrella
--- stdin
override on
sigignore QUIT KILL STOP nada
sigignore
sigaction -dfl -ign -hand QUIT
sigaction -default QUIT
sigaction -ignore USR1
sigaction USR1 QUIT
--- stdout
~~~
~ .*  SENALES SIGNORADAS: QUIT $
~ .*  senal desconocida:-dfl
  senal desconocida:-ign
  senal desconocida:-hand
       QUIT: No Enmascarada SIG_IGN
~ .*       USR1: No Enmascarada SIG_IGN
       QUIT: No Enmascarada SIG_DFL
~ .* (no-eol)
