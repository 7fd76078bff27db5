// CPageImplBase: what a page's class T adds to the code of its shape: the dialog template T::IDD.
#pragma once

#include "window/data_exchange.h"
#include "window/dialog_impl.h"

template <class T, class Core>
class CPageImplBase : public CDialogImpl<T, Core>, public CWinDataExchange<T>
{
public:
    using CDialogImpl<T, Core>::CDialogImpl;
};
