#pragma once

// Everything that the plug-in shows to a host.

#include "maps/MapUtil.h"
#include "ostreltransforms/Callbacks.h"
#include "ostreltransforms/FunctionDocumentation.h"
#include "ostreltransforms/Registration.h"
#include "ostreltransforms/StoreValueOperators.h"
#include "ostreltransforms/TransformNames.h"
#include "ostreltransforms/VisualKey.h"
#include "ostreltransforms/composer/ComposeText.h"
#include "ostreltransforms/composer/FontSize.h"
#include "render/ComplexTokenizer.h"
#include "render/CompositionCache.h"
#include "render/FormattedText.h"
#include "render/RectFitTest.h"
#include "render/ShapeComposer.h"
#include "render/SimpleTokenizer.h"
#include "render/TextComposer.h"
#include "render/TokenPassIterator.h"
#include "string/InternalTrim.h"
