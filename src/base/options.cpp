#include "base/options.h"

EngineOptions options;
