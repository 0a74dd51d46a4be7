// Every public header of the library.
#pragma once

#include "qvox/platform/CRuntime.h"
#include "qvox/platform/CString.h"
#include "qvox/platform/CStringList.h"
#include "qvox/platform/CUIntArray.h"
#include "qvox/platform/CodePage.h"
#include "qvox/platform/Locale.h"
#include "qvox/platform/Platform.h"
#include "qvox/platform/WinError.h"
#include "qvox/platform/WinTypes.h"
#include "qvox/price/BaseCodeTables.h"
#include "qvox/price/Helper.h"
#include "qvox/price/PriceText.h"
