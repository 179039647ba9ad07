# What the rules of form share: report(TEXT) names a break and counts it in `breaks`. A function that reports hands the
# count on to its caller.

set(breaks 0)

macro(report text)
    message(STATUS "${text}")
    math(EXPR breaks "${breaks} + 1")
endmacro()
