#include "batch/Background.h"

#include <memory>
#include <utility>

namespace App {

namespace {

struct Piece {
    uv_work_t request{};
    std::function<void()> work;
    std::function<void()> done;
};

Piece* pieceOf(uv_work_t* request) {
    return static_cast<Piece*>(request->data);
}

}  // namespace

void inBackground(uv_loop_t* loop, std::function<void()> work, std::function<void()> done) {
    auto piece = std::make_unique<Piece>();
    piece->work = std::move(work);
    piece->done = std::move(done);
    piece->request.data = piece.get();
    const int error = uv_queue_work(
        loop, &piece->request, [](uv_work_t* request) { pieceOf(request)->work(); },
        [](uv_work_t* request, int) {
            const std::unique_ptr<Piece> ended(pieceOf(request));
            ended->done();
        });
    if (error == 0) {
        (void)piece.release();
        return;
    }
    piece->work();
    piece->done();
}

}  // namespace App
