// TEST DOUBLE of the ACIS geometry kernel (see acis.hxx): outcomes, errors
// and the bulletin board.
//
// Every api_... function returns an outcome; check_outcome turns an error
// outcome into an acis_exception. Work done between api_bb_begin and
// api_bb_end is kept when the outcome given to api_bb_end is ok and rolled
// back otherwise: entities made in between are lost again.
#pragma once

#include <exception>

#include "acis.hxx"

// Error numbers of the stand-in.
enum : err_mess_type {
    ACIS_DOUBLE_NO_PRODUCT_ID = 1001,
    ACIS_DOUBLE_NOT_BINARY_FILE,
    ACIS_DOUBLE_NOT_DOUBLE_FILE,
    ACIS_DOUBLE_END_OF_FILE,
    ACIS_DOUBLE_BAD_TOKEN,
    ACIS_DOUBLE_UNKNOWN_ENTITY,
    ACIS_DOUBLE_BAD_REFERENCE,
    ACIS_DOUBLE_BAD_RECORD,
    ACIS_DOUBLE_NULL_ENTITY,
    ACIS_DOUBLE_NO_FILE,
};

class ACIS_DOUBLE_API outcome {
public:
    outcome(err_mess_type error = 0) : m_error(error) {}
    logical ok() const { return m_error == 0; }
    err_mess_type error_number() const { return m_error; }

private:
    err_mess_type m_error;
};

// The message text of an error number.
ACIS_DOUBLE_API const char* find_err_mess(err_mess_type error);

class ACIS_DOUBLE_API acis_exception : public std::exception {
public:
    explicit acis_exception(err_mess_type error) : m_error(error) {}
    err_mess_type error_number() const { return m_error; }
    const char* what() const noexcept override;

private:
    err_mess_type m_error;
};

// Throws acis_exception for an error outcome.
ACIS_DOUBLE_API void check_outcome(outcome const& result);
// Raises an error (throws acis_exception).
[[noreturn]] ACIS_DOUBLE_API void sys_error(err_mess_type error);

ACIS_DOUBLE_API void api_bb_begin(logical linear = TRUE);
ACIS_DOUBLE_API void api_bb_end(outcome& result, logical linear = TRUE, logical delete_stacked_bb = FALSE);
