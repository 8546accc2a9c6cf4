#pragma once

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

/// A new array holding `block(element, index)` for every element, in order.
template <class T, class F>
auto vlx_mapObjectsUsingBlock(const std::vector<T>& array, F&& block)
    -> std::vector<std::decay_t<std::invoke_result_t<F&, const T&, std::size_t>>> {
    std::vector<std::decay_t<std::invoke_result_t<F&, const T&, std::size_t>>> result;
    result.reserve(array.size());
    for (std::size_t index = 0; index < array.size(); ++index) {
        result.push_back(std::invoke(block, array[index], index));
    }
    return result;
}

/// The same for a dynamic array. Nil results are stored as null, so the result stays aligned
/// index for index with the input (dynamic arrays cannot hold nil).
template <class F>
VLXValue::Array vlx_mapObjectsUsingBlock(const VLXValue& array, F&& block) {
    const auto& elements = array.arrayValue();
    VLXValue::Array result;
    result.reserve(elements.size());
    for (std::size_t index = 0; index < elements.size(); ++index) {
        VLXValue mapped = std::invoke(block, elements[index], index);
        result.push_back(mapped.isNil() ? VLXValue::null() : std::move(mapped));
    }
    return result;
}
