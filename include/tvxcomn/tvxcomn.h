/* The whole interface. */
#ifndef TVXCOMN_TVXCOMN_H
#define TVXCOMN_TVXCOMN_H

#include "tvxcomn/attributes.h"
#include "tvxcomn/binary.h"
#include "tvxcomn/context.h"
#include "tvxcomn/datatypes.h"
#include "tvxcomn/datearith.h"
#include "tvxcomn/dateformat.h"
#include "tvxcomn/dateparse.h"
#include "tvxcomn/dates.h"
#include "tvxcomn/diagnosis.h"
#include "tvxcomn/dispatch.h"
#include "tvxcomn/legacy.h"
#include "tvxcomn/lists.h"
#include "tvxcomn/money.h"
#include "tvxcomn/null.h"
#include "tvxcomn/numbertext.h"
#include "tvxcomn/numeric.h"
#include "tvxcomn/paths.h"
#include "tvxcomn/scalar.h"
#include "tvxcomn/support.h"
#include "tvxcomn/threads.h"

#endif
