say "TavUtil: the desktop chores of the Trimdial host programs"
tav --version
say "The running Windows, as the library classifies it"
tav os
say "Text cut into display lines of at most 16 characters"
tav cut 16 "Press the thumb button to type your signature into any window"
say "Every verb explains itself (--help, -h or tavutil help VERB) and does nothing else"
tav help cut
say "Wrong usage says what is wrong, on standard error, with exit status 2"
tav cut 0 hello
