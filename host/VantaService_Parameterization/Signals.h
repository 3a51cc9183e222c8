#pragma once

#include <boost/signals2/signal.hpp>

namespace Kestrel::Signals {

template <typename Signature>
using Signal = boost::signals2::signal<Signature>;

/// What a signal calls; made from any callable of the signature.
template <typename Signature>
using Slot = typename Signal<Signature>::slot_type;

/// Keeps a slot connected until it is disconnected or the signal is destroyed. Destroying a connection leaves
/// the slot connected.
using Connection = boost::signals2::connection;

}  // namespace Kestrel::Signals
