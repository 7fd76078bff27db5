// CWizardPageImpl: a page with a window of its own.
#pragma once

#include "frame/page_impl.h"
#include "frame/wizard_page_core.h"

template <class T>
class CWizardPageImpl : public CPageImplBase<T, CWizardPageCore>
{
public:
    using CPageImplBase<T, CWizardPageCore>::CPageImplBase;
};
