# frozen_string_literal: true

# The pictures are taken at two pixels a point of the screen, so that they are sharp when printed and on
# fine screens. Shows each at half its pixels; a PNG tells its size in its header. And short examples stay
# on one page of the PDF.
Asciidoctor::Extensions.register do
  tree_processor do
    process do |document|
      document.find_by(context: :image).each do |image|
        file = File.join(document.base_dir, document.attr('imagesdir').to_s, image.attr('target'))
        next unless File.file?(file)

        image.set_attr('width', (File.binread(file, 4, 16).unpack1('N') / 2).to_s)
      end
      document.find_by(context: :listing).each do |example|
        example.set_option('unbreakable') if example.lines.size <= 30
      end
      nil
    end
  end
end
