// Where the bytes of an input come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class bytes_t {
public:
    virtual ~bytes_t() = default;

    /// The bytes that are available, at least one; waits if there are none yet. Empty at the end,
    /// after a failure, and if the run is to stop. The bytes live until the next `read`.
    virtual std::string_view read() = 0;

    /// Why there are no more bytes, as a message; empty if the end was reached.
    virtual std::string fault() const = 0;
};

/// Bytes that can be read at any place.
class placedBytes_t {
public:
    virtual ~placedBytes_t() = default;

    virtual std::uint64_t size() const = 0;
    /// Reads up to `size` bytes from `offset` on, and returns how many. There are fewer only at the
    /// end of the input and after a failure.
    virtual std::size_t readAt(std::uint64_t offset, char* out, std::size_t size) = 0;

    /// Why not all bytes could be read, as a message; empty if nothing went wrong.
    virtual std::string fault() const = 0;
};

/// Bytes that may come late.
class liveBytes_t : public bytes_t {
public:
    /// Whether a `read` would return at once.
    virtual bool isReady() = 0;
    /// Waits for that, at most until nobody reads `output` any more, or until a stop signal comes.
    /// It may return sooner.
    virtual void wait(int output) = 0;
};
