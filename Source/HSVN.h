#pragma once

/// Everything that an application needs: every public header of the library.

#include "HSVNBundle.h"
#include "HSVNBundleLoader.h"
#include "HSVNBundleProxy.h"
#include "HSVNCoder.h"
#include "HSVNContext.h"
#include "HSVNDate.h"
#include "HSVNDebug.h"
#include "HSVNException.h"
#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNPackage.h"
#include "HSVNPlatformException.h"
#include "HSVNStringProperties.h"
#include "HSVNTypes.h"
#include "HSVNUserInfo.h"
#include "HSVNVersion.h"
