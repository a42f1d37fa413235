#include "static_control.h"

#include "window_object.h"
#include "window_state.h"
#include "window_update.h"

namespace {

class Static final : public rv::Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        switch (message) {
            case WM_ENABLE:
                rv::Invalidate(*this, true);
                return 0;
            default:
                return Default(message, first, second);
        }
    }
};

}  // namespace

rv::Window* rv::Make_Static() noexcept {
    return new (std::nothrow) Static;
}
