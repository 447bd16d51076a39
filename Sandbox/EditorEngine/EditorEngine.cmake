# The stand-in editor: the editor module (Source/Maptorn) compiled against the declared engine surface
# (Tools/EngineSurface) and run on our own working implementation of that surface (Sandbox/EditorEngine),
# whose HTTP, processes, plug-ins, config and mod.io subsystem are real: libcurl, child processes, the
# project's files on disk, and the mod.io REST client against a sandbox service.
set(MAPTORN_ENGINE_SURFACE ${PROJECT_SOURCE_DIR}/Tools/EngineSurface/Include)
set(MAPTORN_GENERATED_HEADERS ${CMAKE_CURRENT_BINARY_DIR}/EngineGenerated)
# The header tool's output: an empty <File>.generated.h for every one a header asks for.
file(GLOB_RECURSE MAPTORN_SURFACE_HEADERS ${MAPTORN_ENGINE_SURFACE}/*.h ${PROJECT_SOURCE_DIR}/Source/Maptorn/*.h)
foreach(Header ${MAPTORN_SURFACE_HEADERS})
  file(STRINGS ${Header} GeneratedIncludes REGEX "#include \"[A-Za-z0-9_]+\\.generated\\.h\"")
  foreach(Line ${GeneratedIncludes})
    string(REGEX REPLACE ".*\"([A-Za-z0-9_]+\\.generated\\.h)\".*" "\\1" Generated "${Line}")
    if(NOT EXISTS ${MAPTORN_GENERATED_HEADERS}/${Generated})
      file(WRITE ${MAPTORN_GENERATED_HEADERS}/${Generated} "")
    endif()
  endforeach()
endforeach()

# What every target built against the surface needs: the surface, the generated headers, the module
# macros the engine's build tool would define.
add_library(MaptornEngineSurface INTERFACE)
target_include_directories(MaptornEngineSurface SYSTEM INTERFACE ${MAPTORN_ENGINE_SURFACE} ${MAPTORN_GENERATED_HEADERS})
target_compile_definitions(MaptornEngineSurface INTERFACE KELVORPROXY_API= MODIO_API= MAPTORN_API=)

# The editor module, every file of it, as the engine would build it.
file(GLOB_RECURSE MAPTORN_EDITOR_MODULE_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Source/Maptorn/Private/*.cpp)
add_library(MaptornEditorModule STATIC ${MAPTORN_EDITOR_MODULE_SOURCES})
target_include_directories(MaptornEditorModule PUBLIC ${PROJECT_SOURCE_DIR}/Source/Maptorn/Public ${PROJECT_SOURCE_DIR}/Source/Maptorn/Private)
target_link_libraries(MaptornEditorModule PUBLIC MaptornEngineSurface MaptornCore)

# The stand-in engine. The engine's zlib module is the system's zlib here.
find_package(ZLIB REQUIRED)
file(GLOB_RECURSE MAPTORN_EDITOR_ENGINE_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Sandbox/EditorEngine/*.cpp)
list(FILTER MAPTORN_EDITOR_ENGINE_SOURCES EXCLUDE REGEX "/Demo/")
add_library(MaptornEditorEngine STATIC ${MAPTORN_EDITOR_ENGINE_SOURCES})
target_include_directories(MaptornEditorEngine PUBLIC ${PROJECT_SOURCE_DIR}/Sandbox)
target_link_libraries(MaptornEditorEngine PUBLIC MaptornEngineSurface MaptornEditorModule MaptornStandalone MaptornSample ZLIB::ZLIB)

# The editor module's own objects and the stand-in's refer to each other (the module's InitializeModule,
# the engine's services): link them as one group.
add_library(MaptornEditor INTERFACE)
target_link_libraries(MaptornEditor INTERFACE "$<LINK_GROUP:RESCAN,MaptornEditorModule,MaptornEditorEngine>")

# The whole journey through the editor's pages, printed for a reader (`make editor-demo`).
file(GLOB MAPTORN_EDITOR_DEMO_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Sandbox/EditorEngine/Demo/*.cpp)
if(MAPTORN_EDITOR_DEMO_SOURCES)
  add_executable(maptorn-editor-demo ${MAPTORN_EDITOR_DEMO_SOURCES})
  target_link_libraries(maptorn-editor-demo PRIVATE MaptornEditor MaptornSample MaptornModioSandbox)
  target_compile_definitions(maptorn-editor-demo PRIVATE MAPTORN_STANDIN_PATH="$<TARGET_FILE:maptorn-standin>"
    MAPTORN_RESOURCES_DIR="${PROJECT_SOURCE_DIR}/Resources/")
  add_dependencies(maptorn-editor-demo maptorn-standin maptorn-sandbox)
endif()
