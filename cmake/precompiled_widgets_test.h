#pragma once

#include "precompiled_widgets.h"

#include "precompiled_core_test.h"
