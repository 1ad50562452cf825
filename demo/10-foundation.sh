say "TavUtil: the desktop chores of the Trimdial host programs"
tav --version
say "The running Windows, as the library classifies it"
tav os
say "Text cut into display lines of at most 16 characters"
tav cut 16 "Press the thumb button to type your signature into any window"
