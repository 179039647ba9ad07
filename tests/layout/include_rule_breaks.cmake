# cmake -D SCRATCH=DIRECTORY -P include_rule_breaks.cmake
# Gives include_rule.cmake small trees that keep or break the rule in one way each.

cmake_minimum_required(VERSION 3.25)

include(${CMAKE_CURRENT_LIST_DIR}/rulebreaks.cmake)

# expect(TEXT FILE LINE...): a sound tree in which FILE consists of these lines. TEXT is what the check has to say,
# empty if it has to pass.
function(expect text file)
    file(REMOVE_RECURSE ${SCRATCH})
    file(WRITE ${SCRATCH}/cmake/AveldoranLayout.cmake
        "set(AVELDORAN_FOLDERS core datamanager channel calibration views)\nset(AVELDORAN_PRIVATE_HEADERS core/hidden.h core/inner.h)\n")
    file(WRITE ${SCRATCH}/core/inner.h "// Private to core/.\n")
    file(WRITE ${SCRATCH}/core/value.h "#include <QtCore/QString>\n")
    file(WRITE ${SCRATCH}/core/hidden.h "// Private to the library.\n")
    file(WRITE ${SCRATCH}/channel/plan.h "#include \"core/value.h\"\n")
    file(WRITE ${SCRATCH}/datamanager/registry.h "#include \"channel/plan.h\"\n")
    file(WRITE ${SCRATCH}/calibration/model.h "#include \"datamanager/registry.h\"\n")
    expect_verdict(include_rule.cmake "${text}" ${file} "${ARGN}")
    set(failures ${failures} PARENT_SCOPE)
endfunction()

expect("" channel/plan.cpp "#include \"channel/plan.h\"" "#include \"core/hidden.h\"" "#include \"plan.moc\"")
expect("" core/value.cpp "#include <core/value.h>" "#include \"moc_value.cpp\"" "// see views/list.h")
expect("" core/hidden.h "// Private" "// to the library." "#include \"core/hidden.h\"")
expect("" core/hidden.h "// Private to" "// the library.")
expect("core/ may not include channel/" core/value.cpp "#include \"channel/plan.h\"")
expect("core/ may not include channel/" core/value.h "  #  include  <channel/plan.h>  // why not [one; two]")
expect("core/ may not include channel/" core/private/deep.cpp "#include \"channel/plan.h\"")
expect("channel/ may not include datamanager/" channel/plan.cpp "" "#include \"datamanager/registry.h\"")
expect("datamanager/ may not include calibration/" datamanager/registry.cpp "#include \"calibration/model.h\"")
expect("calibration/ may not include channel/" calibration/model.cpp "#include \"channel/plan.h\"")
expect("views/ may not include datamanager/" views/list.cpp "#include \"datamanager/registry.h\"")
expect("a public header may not include a private one" core/value.h "#include \"core/hidden.h\"")
expect("a public header may not include a private one" channel/plan.h "#include <core/hidden.h>")
expect("" core/value.cpp "#include \"core/inner.h\"")
expect("core/inner.h, which is private to core/" channel/plan.cpp "#include \"core/inner.h\"")
expect("core/inner.h, which is private to core/" channel/plan.h "#include <core/inner.h>")
expect("quoted names begin with a library folder" channel/plan.cpp "#include \"plan.h\"")
expect("quoted names begin with a library folder" channel/plan.cpp "#include \"../datamanager/registry.h\"")
expect("quoted names begin with a library folder" channel/plan.cpp "#include \"apps/commands.h\"")
expect("which doesn't exist" channel/plan.cpp "#include \"core/vlaue.h\"")
expect("doesn't stand in AVELDORAN_PRIVATE_HEADERS" core/other.h "// Private to the library.")
expect("but doesn't say \"Private to\"" core/hidden.h "#pragma once")
expect("names core/gone.h, which doesn't exist" cmake/AveldoranLayout.cmake
    "set(AVELDORAN_FOLDERS core)" "set(AVELDORAN_PRIVATE_HEADERS core/hidden.h core/gone.h)")
expect("no library folder has sources" cmake/AveldoranLayout.cmake "set(AVELDORAN_FOLDERS views)")

if(failures GREATER 0)
    message(FATAL_ERROR "${failures} trees were not judged as expected")
endif()
