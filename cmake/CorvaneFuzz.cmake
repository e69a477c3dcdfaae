# corvane_add_fuzz_target(NAME SOURCE CORPUS_DIR LIBS...)
# A fuzz target is one LLVMFuzzerTestOneInput function. In a normal build it is
# linked with a replay driver and run over its seed corpus as a test; with
# CORVANE_FUZZ=ON (clang) it is linked with libFuzzer for real fuzzing
# (scripts/fuzz.sh).
function(corvane_add_fuzz_target name source corpus)
  set(libs ${ARGN})
  if(CORVANE_FUZZ)
    add_executable(${name} ${source})
    target_link_libraries(${name} PRIVATE ${libs})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  elseif(CORVANE_TESTS)
    add_executable(${name}_replay ${source} ${PROJECT_SOURCE_DIR}/fuzz/replay_main.cpp)
    target_link_libraries(${name}_replay PRIVATE ${libs})
    add_test(NAME ${name}_corpus COMMAND ${name}_replay ${corpus})
  endif()
endfunction()
