// The products of a run as answers name them.
#pragma once

#include "include/product.h"
#include "setup/answers.h"

#include <vector>

// Without a name for null, as for a page that belongs to no product.
inline AnswerProduct NamesOf(const CProduct* product)
{
    return product ? AnswerProduct{CString(product->m_strName), CString(product->m_strProductCode)}
                   : AnswerProduct();
}

inline std::vector<AnswerProduct> NamesOf(const std::vector<CProduct*>& products)
{
    std::vector<AnswerProduct> names;
    for (const CProduct* product : products) {
        names.push_back(NamesOf(product));
    }
    return names;
}
