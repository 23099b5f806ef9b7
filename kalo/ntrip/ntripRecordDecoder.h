// The fields of one record of an NTRIP sourcetable. kalo/ntrip/ntripStreamDecoder.h decodes those
// of a stream (STR).
#pragma once

#include <string>

#include "kalo/export.h"

namespace kalo {

/// One record, split at ";". Field 0 is its tag: "STR", "CAS" or "NET". Quotes have no meaning, and
/// the texts are neither trimmed nor changed. The decoder owns the texts; a copy is independent of
/// the original. If memory runs out in `init` or an assignment, some texts are those of the new
/// record and some those of an earlier one; the object can be used again.
class KALO_EXPORT ntripRecordDecoder_t {
public:
    /// A record without fields.
    ntripRecordDecoder_t();
    ntripRecordDecoder_t(const ntripRecordDecoder_t& other);
    ntripRecordDecoder_t& operator=(const ntripRecordDecoder_t& other);
    ~ntripRecordDecoder_t();

    /// Replaces all fields with those of a line, as `decodeNtripRecordType` found it.
    ///
    /// Caveat: the text after the last ";" is a field only if CR or LF follows it.
    void init(const char* data, unsigned length);

    /// Number of fields, the tag included.
    unsigned fieldCount() const;
    /// The text of a field; null beyond the last field and for an empty field. Valid until the next
    /// `init` or assignment.
    const std::string* fieldAt(unsigned index) const;

    /// A number. A missing or empty field gives false and leaves `out` untouched.
    bool decodeField(unsigned index, float& out) const;
    /// A decimal number. A missing or empty field gives false and leaves `out` untouched.
    bool decodeField(unsigned index, unsigned& out) const;
    /// "Y" for true, "N" for false. Any other text gives false and leaves `out` untouched.
    bool decodeYN(unsigned index, bool& out) const;
    /// 1 for true, 0 for false. Any other text gives false and leaves `out` untouched.
    bool decodeOneZero(unsigned index, bool& out) const;

private:
    struct state_t;

    state_t* m_state;
};

} // namespace kalo
