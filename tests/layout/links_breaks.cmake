# cmake -D SCRATCH=DIRECTORY -P links_breaks.cmake
# Gives links.cmake trees with a link that is sound or broken in one way each.

cmake_minimum_required(VERSION 3.25)

include(${CMAKE_CURRENT_LIST_DIR}/rulebreaks.cmake)

# expect(TEXT LINE...): what the check has to say of a document of these lines beside another, empty if it has to pass.
function(expect text)
    file(REMOVE_RECURSE ${SCRATCH})
    file(WRITE ${SCRATCH}/docs/other.md "# Other\n\n## The `code` of 1-2 (more)\n\n```\n## Not one\n```\n\n    [x](gone.md)\n")
    expect_verdict(links.cmake "${text}" docs/page.md "${ARGN}")
    set(failures ${failures} PARENT_SCOPE)
endfunction()

expect("" "[one](other.md) and [the" "other](../docs/other.md#the-code-of-1-2-more)")
expect("" "# Here" "[self](#here), ![picture](other.md), [web](https://gone.invalid/x.md)")
expect("" "[one](other.md) `[&out](const)`" "```cpp" "[=](gone)" "```" "" "    [x](gone)")
expect("docs/page.md: gone.md doesn't exist" "[one](gone.md)")
expect("docs/page.md: other.md#not-one has no such heading" "[one](other.md#not-one)")
expect("docs/page.md: #there has no such heading" "# Here" "[self](#there)")
expect("there are no links" "text")

if(failures GREATER 0)
    message(FATAL_ERROR "${failures} documents were not judged as expected")
endif()
