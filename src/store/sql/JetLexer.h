#pragma once
// Splits a Jet-dialect statement into tokens. Names are case-blind; `[names with blanks]`; 'text' and
// "text" with doubled quotes; #date# literals read as Jet reads them in statements (month first).

#include <QString>
#include <vector>

namespace jet {

enum class TokenType {
    Word,       // a bare name or keyword; lower holds the lower-case form
    QuotedName, // [name]
    String,
    Number,
    Date,   // text: ISO "yyyy-MM-dd hh:mm:ss"
    Symbol, // ( ) , . ; * + - / \ ^ & = < > <= >= <> !
    End,
};

struct Token {
    TokenType type = TokenType::End;
    QString text;  // names and strings without their quotes; symbols as written
    QString lower; // words: lower case
    int start = 0;
    int end = 0;
};

// Reads a date literal's text (between the # signs) as Jet does in statements: year first when the first
// part has four digits, otherwise month first. Returns an empty string when it is no date.
QString JetDateLiteralToIso(const QString& text);

// Throws DbError 3075 on an unterminated string, name or date.
std::vector<Token> Tokenize(const QString& statement);

} // namespace jet
