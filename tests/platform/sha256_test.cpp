#include "platform/sha256.h"

#include <gtest/gtest.h>

namespace norva {

TEST(Sha256, GivesTheKnownDigestsHoweverTheBytesCome) {
    std::pair<std::string, char const*> const cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
         "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
        {std::string(1000000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (auto const& [text, digest] : cases) {
        for (std::size_t const piece : {1U, 55U, 64U, 129U, 1000000U}) {
            CSha256 sum;
            for (std::size_t at = 0; at < text.size(); at += piece) {
                sum.Add(text.data() + at, std::min(piece, text.size() - at));
            }
            EXPECT_EQ(sum.Finish(), digest) << text.size() << " bytes in pieces of " << piece;
        }
    }
}

}  // namespace norva
