#include "Common/Paths.h"
