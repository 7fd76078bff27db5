// CWinDataExchange<T>: the base of a page that marks where an exchange of values between controls and members by a map
// would stand. No page has such a map; pages read and write their controls by themselves.
#pragma once

template <class T>
class CWinDataExchange
{
protected:
    ~CWinDataExchange() = default;
};
