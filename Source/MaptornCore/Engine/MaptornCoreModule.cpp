// Engine-only: UBT compiles every .cpp under the module folder, CMake only Private/. The core has
// no start-up of its own; the editor module Maptorn creates and drives it.
#include "Modules/ModuleManager.h"

IMPLEMENT_MODULE(FDefaultModuleImpl, MaptornCore)
