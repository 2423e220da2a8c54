// NamePattern: a regular expression (ECMAScript syntax, case-sensitive)
// that file names are fully matched against without backtracking.
//
// File-dialog filters arrive in a translator's description from another
// process, so their patterns are untrusted. The standard library's matcher
// backtracks (a pattern like ".*+iges" takes exponential time) and recurses
// once per input character (a long name overflows the stack). NamePattern
// compiles the pattern into a small instruction list and runs all of its
// threads in lockstep over the name: time is bounded by name length times
// program size, memory by the program size, and nothing recurses on the
// input.
//
// Supported: literals and escapes (\n \t \r \f \v \0 \xHH \uHHHH \cX and
// identity escapes), '.', character classes with ranges and negation,
// \d \D \w \W \s \S, groups "(...)" and "(?:...)", alternation '|',
// the quantifiers * + ? {n} {n,} {n,m} (a trailing '?' is accepted; a
// quantifier may follow another one and then repeats it), and the
// assertions ^ $ \b \B. Backreferences and lookahead assertions are not
// supported: constructing a NamePattern from them throws
// std::regex_error(error_complexity), as does a pattern that compiles to
// more than kMaxProgramSize instructions. Malformed patterns throw the
// std::regex_error that std::regex would.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace xch {
namespace internal {

class NamePattern {
public:
    // Largest compiled program accepted (instructions).
    static constexpr std::size_t kMaxProgramSize = 4096;

    explicit NamePattern(const std::wstring& pattern);

    // Whether the whole of `text` matches.
    bool fullMatch(const std::wstring& text) const;

    // Whether `pattern` uses a construct NamePattern does not support
    // (a backreference or a lookahead), so that the caller may choose
    // another matcher for a trusted pattern.
    static bool usesUnsupported(const std::wstring& pattern);

    struct Range {
        wchar_t low;
        wchar_t high;
    };
    struct CharClass {
        std::vector<Range> ranges;
        bool negated = false;
        bool contains(wchar_t c) const;
    };
    enum class Op { Char, Any, Class, Split, Jump, Begin, End, WordBoundary, NotWordBoundary, Match };
    struct Instruction {
        Op op;
        wchar_t c = 0;          // Char
        std::size_t x = 0;      // Class: class index; Split / Jump: target
        std::size_t y = 0;      // Split: second target
    };

private:
    std::vector<Instruction> m_program;
    std::vector<CharClass> m_classes;
};

} // namespace internal
} // namespace xch
