# Holds the library's exported names against the families that are meant to be its face.
#
#     cmake -DLIBRARY=... -DNM=... -DOBJDUMP=... -DCXXFILT=... -P exports.cmake

set(prefix "vtable for |typeinfo for |typeinfo name for |(unsigned )?int ")
set(classes RVAppInfo RVButton RVCmdLineInfo RVColorCellCtrl RVDateTime RVDirMgr RVDwordCrossRef RVEditingStatus
  RVGUIDNode RVListBox RVListCtrl RVMasterSettings RVMutex RVNameCache RVRegCategory RVRegTool
  RVResourceLoader RVSharedMemory RVStatic RVStringPacker RVVariant RVWaitCursor RVXmlParser RVbsuErrorLog)
set(functions pBase64_ pCombine_File_Path pFind_Running_Instance pGet_App_Data_Path
  pGet_Tab_Ctrl_Data "p(Init|Cleanup)_Language_Support" pHandle_Language_Message pIs_Push_Button
  pSet_Dialog_Focus pSQL_Double_To_String "(HashKey|CompareElements)<RVGUIDNode")
list(JOIN classes "|" classes)
list(JOIN functions "|" functions)
# What a DLL shows beside them: the types that it catches, whose descriptions every module has.
set(caught "typeinfo (name )?for (CException[*]?|rv::HeapObject)$")
set(families "^(${prefix})?(${classes}|${functions})|^${caught}")

if(LIBRARY MATCHES "\\.dll$")
  execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE listing COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE ".*\\[Ordinal/Name Pointer\\] Table" "" listing "${listing}")
  # A bracket would hold a list of CMake's together.
  string(REPLACE "]" "|" listing "${listing}")
  string(REGEX REPLACE "\n\n.*" "" listing "${listing}")
  string(REGEX MATCHALL "[|] [A-Za-z0-9_?@$]+" names "${listing}")
  list(TRANSFORM names REPLACE "^[|] " "")
else()
  # Weak names are instances of the standard library's templates.
  execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY} OUTPUT_VARIABLE listing
                  COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[0-9a-f]+ [TDBR] [^\n]+" names "${listing}")
  list(TRANSFORM names REPLACE "^[0-9a-f]+ [TDBR] " "")
endif()
if(NOT names)
  message(FATAL_ERROR "no exported name was found in ${LIBRARY}")
endif()

foreach(name IN LISTS names)
  execute_process(COMMAND ${CXXFILT} ${name} OUTPUT_VARIABLE plain OUTPUT_STRIP_TRAILING_WHITESPACE
                  COMMAND_ERROR_IS_FATAL ANY)
  if(NOT plain MATCHES "${families}")
    message(SEND_ERROR "exported without being meant to be: ${plain}")
  endif()
endforeach()
list(LENGTH names count)
message(STATUS "${count} exported names")
