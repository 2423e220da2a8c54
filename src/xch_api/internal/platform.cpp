#include <xch_api/internal/platform.h>

#include <boost/uuid/entropy_error.hpp>
#include <boost/throw_exception.hpp>

#include <cerrno>
#include <climits>
#include <cwchar>

#if defined(_WIN32)
#  include <windows.h>
#  include <bcrypt.h>
#else
#  include <sys/random.h>
#endif

namespace xch {
namespace platform {

#if defined(_WIN32)

void randomBytes(std::uint8_t* out, std::size_t size) {
    BCRYPT_ALG_HANDLE provider = nullptr;
    NTSTATUS status = BCryptOpenAlgorithmProvider(&provider, BCRYPT_RNG_ALGORITHM, nullptr, 0);
    if (!BCRYPT_SUCCESS(status))
        BOOST_THROW_EXCEPTION(boost::uuids::entropy_error(status, "BCryptOpenAlgorithmProvider"));
    status = BCryptGenRandom(provider, out, static_cast<ULONG>(size), 0);
    BCryptCloseAlgorithmProvider(provider, 0);
    if (!BCRYPT_SUCCESS(status))
        BOOST_THROW_EXCEPTION(boost::uuids::entropy_error(status, "BCryptGenRandom"));
}

std::string toNarrow(const wchar_t* text, std::size_t size) {
    if (size == 0)
        return std::string();
    if (size > static_cast<std::size_t>(INT_MAX))
        throw std::length_error("text too long for code page conversion");
    int length = static_cast<int>(size);
    int needed = WideCharToMultiByte(0, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string out(static_cast<std::size_t>(needed > 0 ? needed : 0), '\0');
    if (needed > 0)
        WideCharToMultiByte(0, 0, text, length, &out[0], needed, nullptr, nullptr);
    return out;
}

#else

void randomBytes(std::uint8_t* out, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        ssize_t n = ::getrandom(out + done, size - done, 0);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            BOOST_THROW_EXCEPTION(boost::uuids::entropy_error(errno, "getrandom"));
        }
        done += static_cast<std::size_t>(n);
    }
}

std::string toNarrow(const wchar_t* text, std::size_t size) {
    std::string out;
    out.reserve(size);
    std::mbstate_t state{};
    char buffer[MB_LEN_MAX];
    for (std::size_t i = 0; i < size; ++i) {
        std::size_t n = std::wcrtomb(buffer, text[i], &state);
        if (n == static_cast<std::size_t>(-1)) {
            out += '?';
            state = std::mbstate_t{};
        } else {
            out.append(buffer, n);
        }
    }
    return out;
}

#endif

} // namespace platform
} // namespace xch
