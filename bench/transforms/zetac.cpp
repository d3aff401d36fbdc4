#include <zetac.h>

#include "transform.h"

namespace transforms {
namespace {

class Buffer {
  public:
    explicit Buffer(int size) : bytes_(size > 0 ? zetsMalloc_8u(size) : nullptr) {}
    ~Buffer() { zetsFree(bytes_); }
    Zet8u* get() const { return bytes_; }

  private:
    Zet8u* bytes_;
};

template <class Spec>
int bufferSize(const Spec* spec, ZetStatus (*getBufSize)(const Spec*, int*)) {
    int size = 0;
    require(getBufSize(spec, &size) == zetStsOk, "no buffer size");
    return size;
}

// A spec, its work buffer, and the call.
template <class Spec, class Element, auto getBufSize, auto function, auto free>
class Call final : public Transform {
  public:
    Call(Spec* spec, float* input, float* output)
        : spec_(spec),
          buffer_(bufferSize<Spec>(spec, getBufSize)),
          input_(reinterpret_cast<Element*>(input)),
          output_(reinterpret_cast<Element*>(output)) {}
    ~Call() override { free(spec_); }
    void run() override { function(input_, output_, spec_, buffer_.get()); }

  private:
    Spec* spec_;
    Buffer buffer_;
    const Element* input_;
    Element* output_;
};

using Fft = Call<ZetsFFTSpec_C_32fc, Zet32fc, zetsFFTGetBufSize_C_32fc, zetsFFTFwd_CToC_32fc,
                 zetsFFTFree_C_32fc>;
using Mdct = Call<ZetsMDCTFwdSpec_32f, Zet32f, zetsMDCTFwdGetBufSize_32f, zetsMDCTFwd_32f,
                  zetsMDCTFwdFree_32f>;
using Imdct = Call<ZetsMDCTInvSpec_32f, Zet32f, zetsMDCTInvGetBufSize_32f, zetsMDCTInv_32f,
                   zetsMDCTInvFree_32f>;

int orderOf(int size) {
    int order = 0;
    while (1 << order < size) ++order;
    return order;
}

std::unique_ptr<Transform> make(Kind kind, int size, float* input, float* output) {
    if (kind == Kind::fft) {
        ZetsFFTSpec_C_32fc* spec = nullptr;
        require(
            zetsFFTInitAlloc_C_32fc(&spec, orderOf(size), zetFftNoDiv, zetAlgHintNone) == zetStsOk,
            "no FFT");
        return std::make_unique<Fft>(spec, input, output);
    }
    if (kind == Kind::mdct) {
        ZetsMDCTFwdSpec_32f* spec = nullptr;
        require(zetsMDCTFwdInitAlloc_32f(&spec, size) == zetStsOk, "no MDCT");
        return std::make_unique<Mdct>(spec, input, output);
    }
    ZetsMDCTInvSpec_32f* spec = nullptr;
    require(zetsMDCTInvInitAlloc_32f(&spec, size) == zetStsOk, "no inverse MDCT");
    return std::make_unique<Imdct>(spec, input, output);
}

}  // namespace

Library zetacLibrary() {
    return {"zetac", std::string("zetac ") + zetacGetLibVersion()->Version, make};
}

}  // namespace transforms
