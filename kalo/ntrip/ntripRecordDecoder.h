// The fields of one record of an NTRIP sourcetable. kalo/ntrip/ntripStreamDecoder.h gives those of
// a stream (STR) their meaning.
#pragma once

#include <string>

#include "kalo/export.h"

namespace kalo {

/// One record, split at ";"; field 0 is its tag ("STR", "CAS" or "NET"). There is no quoting, and
/// the texts are neither trimmed nor changed. The decoder owns them; copies are deep and
/// independent.
class KALO_EXPORT ntripRecordDecoder_t {
public:
    /// No fields.
    ntripRecordDecoder_t();
    ntripRecordDecoder_t(const ntripRecordDecoder_t& other);
    ntripRecordDecoder_t& operator=(const ntripRecordDecoder_t& other);
    ~ntripRecordDecoder_t();

    /// Replaces all fields by those of a line, as `decodeNtripRecordType` has found it.
    /// Caveat: what stands behind the last ";" is a field only with a CR or LF behind it.
    void init(const char* data, unsigned length);

    unsigned fieldCount() const;
    /// Null beyond the last field and for an empty one. Valid until the next `init` or assignment.
    const std::string* fieldAt(unsigned index) const;

    // A missing or empty field gives false and leaves `out` untouched.
    bool decodeField(unsigned index, float& out) const;
    bool decodeField(unsigned index, unsigned& out) const;
    /// "Y" is true, "N" false; anything else gives false and leaves `out` untouched.
    bool decodeYN(unsigned index, bool& out) const;
    /// 1 is true, 0 false; anything else gives false and leaves `out` untouched.
    bool decodeOneZero(unsigned index, bool& out) const;

private:
    struct state_t;

    state_t* m_state;
};

} // namespace kalo
