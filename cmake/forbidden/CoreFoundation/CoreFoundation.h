#error "QuillaneCore sees neither Qt nor a platform header"
