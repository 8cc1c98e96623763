#pragma once

/// Everything that an application needs: every public header of the library.

#include "HSVNBundle.h"
#include "HSVNCoder.h"
#include "HSVNContext.h"
#include "HSVNDate.h"
#include "HSVNException.h"
#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNPlatformException.h"
#include "HSVNTypes.h"
#include "HSVNUserInfo.h"
#include "HSVNVersion.h"
