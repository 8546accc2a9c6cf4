#include <VelmarCoreUI/Animation/VLXTransactionHelpers.h>

#include <utility>

#include <VelmarCoreUI/Platform/Layers/VLXTransaction.h>

namespace {

void setCompletion(std::function<void()> completion) {
    VLXTransaction::setCompletionBlock([completion = std::move(completion)] {
        if (completion) {
            completion();
        }
    });
}

}  // namespace

void vlx_transactionByDisablingActions(const std::function<void()>& actions) {
    VLXTransaction::begin();
    VLXTransaction::setDisableActions(true);
    if (actions) {
        actions();
    }
    VLXTransaction::commit();
}

void vlx_beginTransactionWithCompletionBlock(std::function<void()> completion) {
    VLXTransaction::begin();
    setCompletion(std::move(completion));
}

void vlx_performTransaction(const std::function<void()>& transaction,
                            std::function<void()> completion) {
    VLXTransaction::begin();
    setCompletion(std::move(completion));
    if (transaction) {
        transaction();
    }
    VLXTransaction::commit();
}
