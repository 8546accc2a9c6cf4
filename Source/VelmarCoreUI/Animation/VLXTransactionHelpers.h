#pragma once

#include <functional>

#include <VelmarCoreUI/VLXExport.h>

/// Begins a transaction with actions disabled, runs `actions` and commits. An empty block is
/// not called (the transaction still opens and commits).
VLX_EXPORT void vlx_transactionByDisablingActions(const std::function<void()>& actions);

/// Begins a transaction whose completion block calls `completion` (when not empty). Does not
/// commit: the caller commits with `VLXTransaction::commit()`.
VLX_EXPORT void vlx_beginTransactionWithCompletionBlock(std::function<void()> completion);

/// Begins a transaction whose completion block calls `completion` (when not empty), runs
/// `transaction` (when not empty) and commits.
VLX_EXPORT void vlx_performTransaction(const std::function<void()>& transaction,
                                       std::function<void()> completion);
