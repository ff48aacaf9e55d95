#pragma once

#include <stdexcept>
#include <string>

namespace tavrelle {

// A failure that ends the command in hand: the number and description the user sees in the
// "Run-time error 'N':" box. The engine raises it wherever a 16-bit size leaves its range, a
// subscript falls outside its table or a text is no number; it is never saturated or ignored.
class ProgramError : public std::runtime_error {
public:
    ProgramError(int number, const std::string& description)
        : std::runtime_error(description), number_(number) {}

    int Number() const noexcept { return number_; }
    std::string Description() const { return what(); }
    // What the program knows beyond the run time's words (which limit, which population), shown
    // after them; empty for most errors.
    const std::string& Detail() const noexcept { return detail_; }
    ProgramError WithDetail(std::string detail) const {
        ProgramError error = *this;
        error.detail_ = std::move(detail);
        return error;
    }

    static ProgramError InvalidCall() { return {5, "Invalid procedure call or argument"}; }
    static ProgramError Overflow() { return {6, "Overflow"}; }
    static ProgramError SubscriptOutOfRange() { return {9, "Subscript out of range"}; }
    static ProgramError DivisionByZero() { return {11, "Division by zero"}; }
    static ProgramError TypeMismatch() { return {13, "Type mismatch"}; }
    static ProgramError FileNotFound() { return {53, "File not found"}; }
    static ProgramError InputPastEndOfFile() { return {62, "Input past end of file"}; }
    static ProgramError NoCurrentRecord() {
        return {3021,
                "Either BOF or EOF is True, or the current record has been deleted. Requested "
                "operation requires a current record."};
    }

private:
    int number_;
    std::string detail_;
};

}  // namespace tavrelle
