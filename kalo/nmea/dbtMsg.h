// DBT, the depth below the transducer.
#pragma once

#include "kalo/export.h"
#include "kalo/nmea/nmeaMsg.h"

namespace kalo {

///   0 address  1 depth (feet)  2 f  3 depth (metres)  4 M  5 depth (fathoms)  6 F
class KALO_EXPORT dbtMsg_t : public nmeaMsg_t {
public:
    explicit dbtMsg_t(const nmeaFormat_t& format);
    ~dbtMsg_t() override;

    /// Metres, from the first pair in the order of the fields whose number and letter are well
    /// formed: feet before metres before fathoms.
    /// Caveat: the letters count in this case only, f is feet and F fathoms.
    bool decodeDepth(double& out) const;
};

} // namespace kalo
