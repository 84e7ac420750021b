// The whole interface of zor: one include for a host that does not mind.

#pragma once

#include "zor/collection.h"
#include "zor/containers.h"
#include "zor/document.h"
#include "zor/export.h"
#include "zor/incident.h"
#include "zor/platform.h"
#include "zor/schema.h"
#include "zor/string.h"
#include "zor/text.h"
#include "zor/types.h"
#include "zor/xml.h"
