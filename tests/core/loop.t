# The loop itself: blank lines, end of input, the history copy rules.

=== end of input ends the shell with status 0
--- stdin
--- stdout
@startup
@prompt  (no-eol)
