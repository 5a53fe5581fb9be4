# ctest ... --output-on-failure | awk -f tools/failures.awk
#
# Leaves out of what failed googletest programs print all that concerns their tests that have passed, so that it does not
# bury the failure. Of a program that ended in the midst of a test, that test's lines stay. So do all other lines.
function release() {
  printf "%s", held
  held = ""
  is_holding = 0
}
/^\[ RUN      \] / { release(); is_holding = 1 }
/^ *[0-9]+\/[0-9]+ Test +#/ || /^ +Start +[0-9]+: / || /^[0-9]+% tests passed/ { release() }
/^\[----------\] / { next }
is_holding && (/^\[       OK \] / || /^\[  SKIPPED \] .* \([0-9]+ ms\)$/) { held = ""; is_holding = 0; next }
is_holding { held = held $0 "\n" }
/^\[  FAILED  \] .* \([0-9]+ ms\)$/ { if (is_holding) { release(); next } }
!is_holding { print }
{ fflush() }
END { release() }
