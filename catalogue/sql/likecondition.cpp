#include "catalogue/sql/likecondition.h"

#include <utility>

namespace catalogue
{

namespace
{

constexpr int kDeepestBrackets = 8;

// Reads the parts from left to right; AND binds closer than OR.
class Reader
{
public:
    Reader(const std::vector<Token> &tokens, std::size_t first, std::size_t last)
        : m_tokens(tokens), m_at(first), m_last(last)
    {
    }

    std::optional<LikeCondition> Read()
    {
        auto root = ReadAny();
        if (!root || m_at != m_last)
            return std::nullopt;
        m_condition.root = std::move(*root);
        return std::move(m_condition);
    }

private:
    using Part = std::optional<LikeNode> (Reader::*)();

    [[nodiscard]] bool Is(std::string_view word) const
    {
        return m_at < m_last && m_tokens[m_at].Is(word);
    }

    bool Take(std::string_view word)
    {
        const bool isThere = Is(word);
        m_at += isThere ? 1 : 0;
        return isThere;
    }

    std::optional<LikeNode> ReadSeveral(LikeNode::Kind kind, std::string_view between, Part part)
    {
        LikeNode node{kind, 0, {}};
        do {
            auto one = (this->*part)();
            if (!one)
                return std::nullopt;
            node.parts.push_back(std::move(*one));
        } while (Take(between));
        if (node.parts.size() == 1)
            return LikeNode(std::move(node.parts.front()));
        return node;
    }

    std::optional<LikeNode> ReadAny()
    {
        return ReadSeveral(LikeNode::Kind::Any, "OR", &Reader::ReadAll);
    }
    std::optional<LikeNode> ReadAll()
    {
        return ReadSeveral(LikeNode::Kind::All, "AND", &Reader::ReadOne);
    }

    std::optional<LikeNode> ReadOne()
    {
        if (!Take("("))
            return ReadTerm();
        if (++m_depth > kDeepestBrackets)
            return std::nullopt;
        auto inside = ReadAny();
        --m_depth;
        if (!Take(")"))
            return std::nullopt;
        return inside;
    }

    // name LIKE text
    std::optional<LikeNode> ReadTerm()
    {
        if (m_at + 3 > m_last || m_condition.columns.size() == kMostLikeTerms)
            return std::nullopt;
        const Token &name = m_tokens[m_at], &text = m_tokens[m_at + 2];
        const bool isName = name.kind == TokenKind::Word || name.kind == TokenKind::Quoted;
        const bool isText = text.kind == TokenKind::Text || text.kind == TokenKind::Placed;
        if (!isName || !m_tokens[m_at + 1].Is("LIKE") || !isText)
            return std::nullopt;
        const auto marks = static_cast<std::size_t>(name.kind == TokenKind::Quoted ? 1 : 0);
        const std::size_t number = m_condition.columns.size();
        m_condition.columns.emplace_back(name.text.substr(marks, name.text.size() - 2 * marks));
        m_at += 3;
        return LikeNode{LikeNode::Kind::Term, number, {}};
    }

    const std::vector<Token> &m_tokens;
    std::size_t m_at, m_last;
    int m_depth = 0;
    LikeCondition m_condition;
};

} // namespace

std::optional<LikeCondition> ReadLikeCondition(const std::vector<Token> &tokens, std::size_t first,
                                               std::size_t last)
{
    return Reader(tokens, first, last).Read();
}

} // namespace catalogue
