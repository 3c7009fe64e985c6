#pragma once // How something low in the house tells the user something.

#include <string_view>

/// Main thread only.
class UserMessageI
{
public:
    virtual ~UserMessageI() = default;

    /// Shows a message box of that id with an Ok button; the id "ERROR_MESSAGE" is for failures.
    virtual void showMessage(std::string_view sId, std::string_view sText) = 0;
};
