// All of kalo in one include.
#pragma once

#include "kalo/nmea/ggaMsg.h"
#include "kalo/nmea/ggaMsgBase.h"
#include "kalo/nmea/nmeaField.h"
#include "kalo/nmea/nmeaFormat.h"
#include "kalo/nmea/nmeaMsg.h"
#include "kalo/nmea/pzwbGgaMsg.h"
#include "kalo/time/dateTime.h"
#include "kalo/time/timeUtil.h"
#include "kalo/util/stringUtil.h"
