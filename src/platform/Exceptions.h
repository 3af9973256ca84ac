#pragma once

#include <exception>
#include <string>
#include <utility>

namespace sorbel {

/// Base of all failures that travel through the program. `ClassName` is what a user or a script sees.
class RuntimeException : public std::exception {
  public:
    explicit RuntimeException(std::string message = {}) : mMessage(std::move(message)) {}
    [[nodiscard]] virtual std::string ClassName() const { return "RuntimeException"; }
    [[nodiscard]] const std::string& Message() const { return mMessage; }
    [[nodiscard]] const char* what() const noexcept override { return mMessage.c_str(); }

  private:
    std::string mMessage;
};

#define SORBEL_EXCEPTION(Name)                                                 \
    class Name : public RuntimeException {                                     \
      public:                                                                  \
        using RuntimeException::RuntimeException;                              \
        [[nodiscard]] std::string ClassName() const override { return #Name; } \
    }

/// A file or folder could not be opened, read or written.
SORBEL_EXCEPTION(IOException);
/// An index outside an array, a list or a stream.
SORBEL_EXCEPTION(OutOfBoundsException);
/// A dictionary was asked for the value of a key that it does not have.
SORBEL_EXCEPTION(KeyNotFoundException);
/// An operation on nothing.
SORBEL_EXCEPTION(NilObjectException);
/// A text that does not have the form asked for, such as a date.
SORBEL_EXCEPTION(UnsupportedFormatException);

#undef SORBEL_EXCEPTION

}  // namespace sorbel
