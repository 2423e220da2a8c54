#include "name_pattern.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <regex>

namespace xch {
namespace internal {

namespace {

using std::regex_constants::error_type;

// Deepest nesting of groups and stacked quantifiers in a pattern; the parser
// and the code generator recurse once per level.
constexpr int kMaxNesting = 64;
// Largest count in a {n,m} quantifier that is even looked at; anything
// larger could never fit into the program.
constexpr unsigned kMaxCount = 1u << 16;
constexpr std::size_t kInfinite = std::numeric_limits<std::size_t>::max();

[[noreturn]] void fail(error_type code) { throw std::regex_error(code); }

constexpr wchar_t kMaxChar = std::numeric_limits<wchar_t>::max();

bool isWordChar(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_';
}

bool isLineTerminator(wchar_t c) {
    return c == L'\n' || c == L'\r' || c == wchar_t(0x2028) || c == wchar_t(0x2029);
}

using Ranges = std::vector<NamePattern::Range>;

Ranges digitRanges() { return {{L'0', L'9'}}; }
Ranges wordRanges() { return {{L'0', L'9'}, {L'A', L'Z'}, {L'_', L'_'}, {L'a', L'z'}}; }
Ranges spaceRanges() {
    return {{wchar_t(0x09), wchar_t(0x0D)}, {wchar_t(0x20), wchar_t(0x20)}, {wchar_t(0xA0), wchar_t(0xA0)},
            {wchar_t(0x1680), wchar_t(0x1680)}, {wchar_t(0x2000), wchar_t(0x200A)},
            {wchar_t(0x2028), wchar_t(0x2029)}, {wchar_t(0x202F), wchar_t(0x202F)},
            {wchar_t(0x205F), wchar_t(0x205F)}, {wchar_t(0x3000), wchar_t(0x3000)},
            {wchar_t(0xFEFF), wchar_t(0xFEFF)}};
}

// The complement of sorted, disjoint ranges.
Ranges complement(const Ranges& ranges) {
    Ranges out;
    wchar_t next = std::numeric_limits<wchar_t>::min();
    bool open = true;
    for (const NamePattern::Range& r : ranges) {
        if (r.low > next) out.push_back({next, wchar_t(r.low - 1)});
        if (r.high == kMaxChar) {
            open = false;
            break;
        }
        next = wchar_t(r.high + 1);
    }
    if (open) out.push_back({next, kMaxChar});
    return out;
}

// A parsed pattern: a tree of nodes held in one vector.
struct Node {
    enum Kind { Empty, Char, Any, Class, Begin, End, WordBoundary, NotWordBoundary, Concat, Alternation, Repeat };
    Kind kind = Empty;
    wchar_t c = 0;
    std::size_t charClass = 0;
    std::size_t min = 0;
    std::size_t max = 0;
    std::vector<std::size_t> children;
};

class Parser {
public:
    Parser(const std::wstring& pattern, std::vector<NamePattern::CharClass>& classes)
        : m_text(pattern), m_classes(classes) {}

    std::vector<Node> nodes;

    std::size_t parse() {
        std::size_t root = alternation(0);
        if (m_pos != m_text.size()) fail(std::regex_constants::error_paren);   // an unopened ')'
        return root;
    }

private:
    const std::wstring& m_text;
    std::size_t m_pos = 0;
    std::vector<NamePattern::CharClass>& m_classes;

    bool atEnd() const { return m_pos >= m_text.size(); }
    wchar_t peek() const { return m_text[m_pos]; }

    std::size_t add(Node node) {
        // Every node costs at least one instruction; a tree larger than the
        // program may be can be refused right away.
        if (nodes.size() >= 4 * NamePattern::kMaxProgramSize) fail(std::regex_constants::error_complexity);
        nodes.push_back(std::move(node));
        return nodes.size() - 1;
    }
    std::size_t leaf(Node::Kind kind, wchar_t c = 0) {
        Node node;
        node.kind = kind;
        node.c = c;
        return add(node);
    }
    std::size_t classNode(Ranges ranges, bool negated) {
        NamePattern::CharClass cls;
        cls.ranges = std::move(ranges);
        cls.negated = negated;
        m_classes.push_back(std::move(cls));
        Node node;
        node.kind = Node::Class;
        node.charClass = m_classes.size() - 1;
        return add(node);
    }

    std::size_t alternation(int depth) {
        if (depth > kMaxNesting) fail(std::regex_constants::error_complexity);
        Node alt;
        alt.kind = Node::Alternation;
        alt.children.push_back(concatenation(depth));
        while (!atEnd() && peek() == L'|') {
            ++m_pos;
            alt.children.push_back(concatenation(depth));
        }
        if (alt.children.size() == 1) return alt.children.front();
        return add(std::move(alt));
    }

    std::size_t concatenation(int depth) {
        Node seq;
        seq.kind = Node::Concat;
        while (!atEnd() && peek() != L'|' && peek() != L')') seq.children.push_back(term(depth));
        if (seq.children.size() == 1) return seq.children.front();
        return add(std::move(seq));
    }

    // An atom followed by any number of quantifiers, each repeating what
    // stands before it.
    std::size_t term(int depth) {
        const bool group = peek() == L'(';
        std::size_t atomIndex = atom(depth);
        const Node::Kind kind = nodes[atomIndex].kind;
        const bool assertion = !group && (kind == Node::Begin || kind == Node::End || kind == Node::WordBoundary ||
                               kind == Node::NotWordBoundary);
        int stacked = 0;
        std::size_t min = 0, max = 0;
        while (quantifier(min, max)) {
            if (assertion) fail(std::regex_constants::error_badrepeat);   // nothing to repeat
            if (depth + ++stacked > kMaxNesting) fail(std::regex_constants::error_complexity);
            Node repeat;
            repeat.kind = Node::Repeat;
            repeat.min = min;
            repeat.max = max;
            repeat.children.push_back(atomIndex);
            atomIndex = add(std::move(repeat));
        }
        return atomIndex;
    }

    bool quantifier(std::size_t& min, std::size_t& max) {
        if (atEnd()) return false;
        switch (peek()) {
        case L'*': min = 0; max = kInfinite; ++m_pos; break;
        case L'+': min = 1; max = kInfinite; ++m_pos; break;
        case L'?': min = 0; max = 1; ++m_pos; break;
        case L'{': ++m_pos; interval(min, max); break;
        default: return false;
        }
        if (!atEnd() && peek() == L'?') ++m_pos;   // lazy: the same set of matches
        return true;
    }

    std::size_t number() {
        std::size_t start = m_pos, value = 0;
        while (!atEnd() && peek() >= L'0' && peek() <= L'9') {
            value = std::min<std::size_t>(value * 10 + std::size_t(peek() - L'0'), kMaxCount);
            ++m_pos;
        }
        if (m_pos == start) fail(std::regex_constants::error_badbrace);
        return value;
    }

    void interval(std::size_t& min, std::size_t& max) {
        min = max = number();
        if (!atEnd() && peek() == L',') {
            ++m_pos;
            max = (!atEnd() && peek() == L'}') ? kInfinite : number();
        }
        if (atEnd() || peek() != L'}') fail(std::regex_constants::error_brace);
        ++m_pos;
        if (max < min) fail(std::regex_constants::error_badbrace);
        if (min >= kMaxCount || (max != kInfinite && max >= kMaxCount)) fail(std::regex_constants::error_complexity);
    }

    std::size_t atom(int depth) {
        wchar_t c = peek();
        ++m_pos;
        switch (c) {
        case L'^': return leaf(Node::Begin);
        case L'$': return leaf(Node::End);
        case L'.': return leaf(Node::Any);
        case L'*': case L'+': case L'?': case L'{':
            fail(std::regex_constants::error_badrepeat);
        case L'[': return bracket();
        case L'\\': return escape();
        case L'(': {
            if (!atEnd() && peek() == L'?') {
                if (m_pos + 1 < m_text.size() && m_text[m_pos + 1] == L':')
                    m_pos += 2;
                else if (m_pos + 1 < m_text.size() && (m_text[m_pos + 1] == L'=' || m_text[m_pos + 1] == L'!'))
                    fail(std::regex_constants::error_complexity);   // lookahead
                else
                    fail(std::regex_constants::error_paren);
            }
            std::size_t inner = alternation(depth + 1);
            if (atEnd() || peek() != L')') fail(std::regex_constants::error_paren);
            ++m_pos;
            return inner;
        }
        default: return leaf(Node::Char, c);
        }
    }

    unsigned hexDigits(int count) {
        unsigned value = 0;
        for (int i = 0; i < count; ++i) {
            if (atEnd()) fail(std::regex_constants::error_escape);
            wchar_t h = peek();
            unsigned digit;
            if (h >= L'0' && h <= L'9') digit = unsigned(h - L'0');
            else if (h >= L'a' && h <= L'f') digit = unsigned(h - L'a' + 10);
            else if (h >= L'A' && h <= L'F') digit = unsigned(h - L'A' + 10);
            else fail(std::regex_constants::error_escape);
            value = value * 16 + digit;
            ++m_pos;
        }
        return value;
    }

    // The character of a character escape (after the backslash and the
    // escape letter `e`), shared by atoms and brackets.
    wchar_t characterEscape(wchar_t e) {
        switch (e) {
        case L'n': return L'\n';
        case L't': return L'\t';
        case L'r': return L'\r';
        case L'f': return L'\f';
        case L'v': return L'\v';
        case L'0': return L'\0';
        case L'x': return wchar_t(hexDigits(2));
        case L'u': return wchar_t(hexDigits(4));
        case L'c': {
            if (atEnd() || !((peek() >= L'a' && peek() <= L'z') || (peek() >= L'A' && peek() <= L'Z')))
                fail(std::regex_constants::error_escape);
            wchar_t letter = peek();
            ++m_pos;
            return wchar_t(letter % 32);
        }
        default: return e;   // identity escape
        }
    }

    // \d \D \w \W \s \S as ranges; false for any other letter.
    static bool classEscape(wchar_t e, Ranges& ranges) {
        switch (e) {
        case L'd': ranges = digitRanges(); return true;
        case L'D': ranges = complement(digitRanges()); return true;
        case L'w': ranges = wordRanges(); return true;
        case L'W': ranges = complement(wordRanges()); return true;
        case L's': ranges = spaceRanges(); return true;
        case L'S': ranges = complement(spaceRanges()); return true;
        default: return false;
        }
    }

    std::size_t escape() {
        if (atEnd()) fail(std::regex_constants::error_escape);
        wchar_t e = peek();
        ++m_pos;
        Ranges ranges;
        if (classEscape(e, ranges)) return classNode(std::move(ranges), false);
        if (e == L'b') return leaf(Node::WordBoundary);
        if (e == L'B') return leaf(Node::NotWordBoundary);
        if (e >= L'1' && e <= L'9') fail(std::regex_constants::error_complexity);   // backreference
        return leaf(Node::Char, characterEscape(e));
    }

    // One member of a bracket: a character (returned through `c`) or a
    // class escape (returned through `ranges`, result false).
    bool bracketMember(wchar_t& c, Ranges& ranges) {
        if (atEnd()) fail(std::regex_constants::error_brack);
        c = peek();
        ++m_pos;
        if (c != L'\\') return true;
        if (atEnd()) fail(std::regex_constants::error_escape);
        wchar_t e = peek();
        ++m_pos;
        if (classEscape(e, ranges)) return false;
        c = e == L'b' ? L'\b' : characterEscape(e);
        return true;
    }

    std::size_t bracket() {
        bool negated = false;
        if (!atEnd() && peek() == L'^') {
            negated = true;
            ++m_pos;
        }
        Ranges ranges;
        for (;;) {
            if (atEnd()) fail(std::regex_constants::error_brack);
            if (peek() == L']') {
                ++m_pos;
                break;
            }
            wchar_t low;
            Ranges escaped;
            if (!bracketMember(low, escaped)) {
                ranges.insert(ranges.end(), escaped.begin(), escaped.end());
                continue;
            }
            if (m_pos + 1 < m_text.size() && peek() == L'-' && m_text[m_pos + 1] != L']') {
                ++m_pos;
                wchar_t high;
                if (!bracketMember(high, escaped)) {
                    // "a-\d": the dash is literal.
                    ranges.push_back({low, low});
                    ranges.push_back({L'-', L'-'});
                    ranges.insert(ranges.end(), escaped.begin(), escaped.end());
                    continue;
                }
                if (high < low) fail(std::regex_constants::error_range);
                ranges.push_back({low, high});
            } else {
                ranges.push_back({low, low});
            }
            if (ranges.size() > NamePattern::kMaxProgramSize) fail(std::regex_constants::error_complexity);
        }
        return classNode(std::move(ranges), negated);
    }
};

using Instruction = NamePattern::Instruction;
using Op = NamePattern::Op;

class Generator {
public:
    Generator(const std::vector<Node>& nodes, std::vector<Instruction>& program)
        : m_nodes(nodes), m_program(program) {}

    void emit(std::size_t index) {
        const Node& node = m_nodes[index];
        switch (node.kind) {
        case Node::Empty: break;
        case Node::Char: push({Op::Char, node.c}); break;
        case Node::Any: push({Op::Any}); break;
        case Node::Class: push({Op::Class, 0, node.charClass}); break;
        case Node::Begin: push({Op::Begin}); break;
        case Node::End: push({Op::End}); break;
        case Node::WordBoundary: push({Op::WordBoundary}); break;
        case Node::NotWordBoundary: push({Op::NotWordBoundary}); break;
        case Node::Concat:
            for (std::size_t child : node.children) emit(child);
            break;
        case Node::Alternation: alternation(node); break;
        case Node::Repeat: repeat(node); break;
        }
    }

private:
    const std::vector<Node>& m_nodes;
    std::vector<Instruction>& m_program;

    std::size_t push(Instruction instruction) {
        if (m_program.size() >= NamePattern::kMaxProgramSize) fail(std::regex_constants::error_complexity);
        m_program.push_back(instruction);
        return m_program.size() - 1;
    }

    // split L1, next; L1: a; jump end; next: split L2, next2; ... last; end:
    void alternation(const Node& node) {
        std::vector<std::size_t> jumps;
        for (std::size_t i = 0; i + 1 < node.children.size(); ++i) {
            std::size_t split = push({Op::Split});
            m_program[split].x = m_program.size();
            emit(node.children[i]);
            jumps.push_back(push({Op::Jump}));
            m_program[split].y = m_program.size();
        }
        emit(node.children.back());
        for (std::size_t jump : jumps) m_program[jump].x = m_program.size();
    }

    void repeat(const Node& node) {
        std::size_t child = node.children.front();
        for (std::size_t i = 0; i < node.min; ++i) emit(child);
        if (node.max == kInfinite) {
            // loop: split body, out; body; jump loop; out:
            std::size_t loop = push({Op::Split});
            m_program[loop].x = m_program.size();
            emit(child);
            std::size_t jump = push({Op::Jump});
            m_program[jump].x = loop;
            m_program[loop].y = m_program.size();
            return;
        }
        // Each optional copy may only be taken after the one before it.
        std::vector<std::size_t> splits;
        for (std::size_t i = node.min; i < node.max; ++i) {
            std::size_t split = push({Op::Split});
            m_program[split].x = m_program.size();
            splits.push_back(split);
            emit(child);
        }
        for (std::size_t split : splits) m_program[split].y = m_program.size();
    }
};

} // namespace

bool NamePattern::CharClass::contains(wchar_t c) const {
    bool in = false;
    for (const Range& r : ranges)
        if (c >= r.low && c <= r.high) {
            in = true;
            break;
        }
    return in != negated;
}

NamePattern::NamePattern(const std::wstring& pattern) {
    // Every pattern character is at most one instruction, except in
    // counted repetitions, which the generator bounds.
    if (pattern.size() > 4 * kMaxProgramSize) fail(std::regex_constants::error_complexity);
    Parser parser(pattern, m_classes);
    std::size_t root = parser.parse();
    Generator generator(parser.nodes, m_program);
    generator.emit(root);
    if (m_program.size() >= kMaxProgramSize) fail(std::regex_constants::error_complexity);
    m_program.push_back({Op::Match});
}

bool NamePattern::usesUnsupported(const std::wstring& pattern) {
    for (std::size_t i = 0; i + 1 < pattern.size(); ++i) {
        if (pattern[i] == L'\\') {
            if (pattern[i + 1] >= L'1' && pattern[i + 1] <= L'9') return true;
            ++i;
        } else if (pattern[i] == L'(' && pattern[i + 1] == L'?' && i + 2 < pattern.size() &&
                   (pattern[i + 2] == L'=' || pattern[i + 2] == L'!')) {
            return true;
        }
    }
    return false;
}

bool NamePattern::fullMatch(const std::wstring& text) const {
    const std::size_t size = m_program.size();
    const std::size_t length = text.size();
    std::vector<std::size_t> current, next, pending;
    current.reserve(size);
    next.reserve(size);
    // mark[pc] == position + 1: pc is already in the list for `position`.
    std::vector<std::size_t> mark(size, 0);

    // Adds the instructions reachable from `start` without consuming input
    // at `position` (an explicit stack: no recursion).
    auto addThread = [&](std::vector<std::size_t>& list, std::size_t start, std::size_t position) {
        pending.clear();
        pending.push_back(start);
        while (!pending.empty()) {
            std::size_t pc = pending.back();
            pending.pop_back();
            if (mark[pc] == position + 1) continue;
            mark[pc] = position + 1;
            const Instruction& in = m_program[pc];
            switch (in.op) {
            case Op::Jump: pending.push_back(in.x); break;
            case Op::Split:
                pending.push_back(in.y);
                pending.push_back(in.x);
                break;
            case Op::Begin:
                if (position == 0) pending.push_back(pc + 1);
                break;
            case Op::End:
                if (position == length) pending.push_back(pc + 1);
                break;
            case Op::WordBoundary:
            case Op::NotWordBoundary: {
                bool before = position > 0 && isWordChar(text[position - 1]);
                bool after = position < length && isWordChar(text[position]);
                if ((before != after) == (in.op == Op::WordBoundary)) pending.push_back(pc + 1);
                break;
            }
            default: list.push_back(pc); break;
            }
        }
    };

    addThread(current, 0, 0);
    for (std::size_t position = 0; position < length && !current.empty(); ++position) {
        const wchar_t c = text[position];
        next.clear();
        for (std::size_t pc : current) {
            const Instruction& in = m_program[pc];
            bool accepts = (in.op == Op::Char && in.c == c) || (in.op == Op::Any && !isLineTerminator(c)) ||
                           (in.op == Op::Class && m_classes[in.x].contains(c));
            if (accepts) addThread(next, pc + 1, position + 1);
        }
        current.swap(next);
        if (position + 1 == length) {
            for (std::size_t pc : current)
                if (m_program[pc].op == Op::Match) return true;
            return false;
        }
    }
    if (length != 0) return false;
    for (std::size_t pc : current)
        if (m_program[pc].op == Op::Match) return true;
    return false;
}

} // namespace internal
} // namespace xch
