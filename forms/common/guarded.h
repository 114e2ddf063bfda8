// SPDX-License-Identifier: GPL-3.0-or-later
// Connecting a handler under its fault guard: a fault inside it is logged with its location label
// and the window goes on.
#pragma once

#include "errorlog.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <functional>
#include <tuple>
#include <type_traits>
#include <utility>

namespace GuardedDetail {
// Calls handler with the first N of the signal's arguments, the most it takes.
template <std::size_t N, typename Handler, typename Tuple>
void callWithPrefix(Handler &handler, const Tuple &arguments)
{
    constexpr auto takesN = []<std::size_t... I>(std::index_sequence<I...>) {
        return std::is_invocable_v<Handler &, std::tuple_element_t<I, Tuple>...>;
    }(std::make_index_sequence<N>());
    if constexpr (takesN)
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            std::invoke(handler, std::get<I>(arguments)...);
        }(std::make_index_sequence<N>());
    else if constexpr (N > 0)
        callWithPrefix<N - 1>(handler, arguments);
    else
        static_assert(N > 0, "the handler takes none of the signal's arguments");
}
} // namespace GuardedDetail

// Connects signal of sender to handler, run by Guard under label, while context lives. The handler
// takes the signal's first arguments (or none); a member function is called on context.
template <typename Sender, typename Signal, typename Context, typename Handler>
QMetaObject::Connection connectGuarded(const Sender *sender, Signal signal, Context *context, const QString &label,
                                       Handler handler)
{
    auto run = [label, context, handler](const auto &...arguments) -> void {
        Guard(label, [&] {
            if constexpr (std::is_member_function_pointer_v<Handler>) {
                auto member = handler;
                GuardedDetail::callWithPrefix<sizeof...(arguments) + 1>(member,
                                                                        std::forward_as_tuple(context, arguments...));
            } else {
                auto copy = handler;
                GuardedDetail::callWithPrefix<sizeof...(arguments)>(copy, std::forward_as_tuple(arguments...));
            }
        });
    };
    return QObject::connect(sender, signal, context, run);
}
