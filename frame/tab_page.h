// CTabPageImpl: a page as a child of the host's tabbed dialog.
#pragma once

#include "frame/page_impl.h"
#include "frame/tab_page_core.h"

template <class T>
class CTabPageImpl : public CPageImplBase<T, CTabPageCore>
{
public:
    using CPageImplBase<T, CTabPageCore>::CPageImplBase;
};
