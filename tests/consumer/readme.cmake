# Runs the program that README.md shows, twice: on a document that is used up, and on none.
#
#     cmake -DEMULATOR=... -DPROGRAM=... -P readme.cmake

file(WRITE document.xml "<r><a><![CDATA[Zmlyc3Q=]]></a><b>text</b><c><![CDATA[c2Vjb25k]]></c></r>")
execute_process(COMMAND ${EMULATOR} ${PROGRAM} document.xml COMMAND_ERROR_IS_FATAL ANY)
foreach(pair "attachment0:first" "attachment1:second")
  string(REPLACE ":" ";" pair ${pair})
  list(GET pair 0 name)
  list(GET pair 1 expected)
  file(READ ${name} content)
  if(NOT content STREQUAL expected)
    message(SEND_ERROR "${name} holds ${content}, not ${expected}")
  endif()
endforeach()
execute_process(COMMAND ${EMULATOR} ${PROGRAM} document.xml RESULT_VARIABLE result)
if(EXISTS document.xml OR NOT result EQUAL 1)
  message(SEND_ERROR "the document is still there")
endif()
